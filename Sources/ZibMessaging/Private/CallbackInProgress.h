// The callbacks that are being handled on this thread, so that one that comes by two ways counts
// once.

#pragma once

#include "ZibMessaging/Private/Installation.h"
#include "ZibMessaging/Private/Interception.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

// How often one callback may come back to the module, one time within the other. Libraries that
// each call what they found before them can make a circle, which would never end.
inline constexpr int maximumDepth = 16;
// Says that the message did, in one error line.
void reportCircle(const char* message) noexcept;

// One of them, from the moment that it reaches the module to the end of the host's own method.
// Lives on the stack. `subject` is the object that the callback is about; it is compared only.
class CallbackInProgress {
 public:
  // A callback that the system makes, on its way through an interceptor.
  CallbackInProgress(Row row, objc::id subject, objc::id receiver,
                     const Installation& installation) noexcept
      : CallbackInProgress(row, subject, receiver, &installation) {}
  // One that the host hands in by hand.
  CallbackInProgress(Row row, objc::id subject) noexcept
      : CallbackInProgress(row, subject, nullptr, nullptr) {}
  ~CallbackInProgress() { innermost = outer_; }
  CallbackInProgress(const CallbackInProgress&) = delete;
  CallbackInProgress& operator=(const CallbackInProgress&) = delete;

  // False when the module has it in hand already: a delegate passes it on to another one, calls
  // `super`, or hands it in by hand as well.
  [[nodiscard]] bool isNew() const noexcept { return isNew_; }
  // How many times it has come now, one within the other.
  [[nodiscard]] int depth() const noexcept { return depth_; }
  // Whether its completion was called since it first came.
  [[nodiscard]] bool isCompleted() const noexcept;

  // Notes that the completion of this callback was called. On another thread than its own, or
  // later, there is nothing to note.
  static void noteCompletion(Row row, objc::id subject) noexcept;
  // Notes that the host handed in by hand what was in hand already, and says how often it did.
  static void noteHandedIn(Row row) noexcept;
  static unsigned long timesHandedIn(Row row) noexcept;
  // What is installed where the latest method for the receiver runs, or null.
  static const Installation* latestFor(Row row, objc::id receiver) noexcept;

 private:
  CallbackInProgress(Row row, objc::id subject, objc::id receiver,
                     const Installation* installation) noexcept
      : row_(row), subject_(subject), receiver_(receiver), installation_(installation) {
    if (outer_ != nullptr) compareWithOuter();
    innermost = this;
  }

  void compareWithOuter() noexcept;
  [[nodiscard]] bool isOf(Row row, objc::id subject) const noexcept {
    return row_ == row && subject_ == subject;
  }
  [[nodiscard]] bool isSuperCallOf(const CallbackInProgress& outer) const noexcept;

  // Known to need no initialisation wherever it is read.
  static constinit thread_local CallbackInProgress* innermost;

  Row row_;
  bool isNew_ = true;
  bool isCompleted_ = false;
  int depth_ = 1;
  objc::id subject_;
  objc::id receiver_;
  const Installation* installation_;
  CallbackInProgress* outer_ = innermost;
};

}  // namespace zib
