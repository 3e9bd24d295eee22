// A host with one delegate for notifications, which counts what reaches it. One in a process.

#pragma once

#include <atomic>

#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace endurance {

class Host {
 public:
  Host();

  // Configures the module, and lets a second pass.
  void configure();
  // The system shows a notification, or the user taps one. Any thread.
  void present();
  void respond();
  // As respond(), with a notification that has no link: nothing of it comes to the main queue,
  // which configure() would otherwise never see empty while other threads go on.
  void respondWithoutLink();

  [[nodiscard]] long sent() const { return sent_; }
  [[nodiscard]] long callbacks() const;
  [[nodiscard]] long completions() const { return completions_; }
  [[nodiscard]] long events() const { return events_; }

 private:
  void respondTo(const zib::Object& response);

  zib::AutoreleasePool pool_;
  zib::Object delegate_;
  zib::Object notification_;
  zib::Object response_;
  zib::Object linkless_;
  std::atomic<long> sent_ = 0;
  std::atomic<long> completions_ = 0;
  std::atomic<long> events_ = 0;
};

}  // namespace endurance
