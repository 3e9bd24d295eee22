// Automatic integration: puts the module between the system and the host's delegates.
//
// Not for hosts: ZibMessaging::configure() decides whether it runs.

#pragma once

#include <atomic>

#include "ZibMessaging/Private/SharedInstance.h"

namespace zib {
struct DelegateLook;
}

// One instance, for the life of the process. Delegates are found and methods installed on the main
// thread only.
class ZibSwizzleManager final : public zib::SharedInstance<ZibSwizzleManager> {
 public:
  static ZibSwizzleManager& shared() noexcept;

  explicit ZibSwizzleManager(Key);

  // The master switch, on by default. The notification entry points of ZibMessaging read it too.
  [[nodiscard]] bool isSwizzlingEnabled() const noexcept { return isSwizzlingEnabled_; }
  void setSwizzlingEnabled(bool enabled) noexcept { isSwizzlingEnabled_ = enabled; }

  // Runs the pass over the host's delegates, at most once in a process, on the main thread; from
  // another thread it waits for that. Delegates that are not there yet are looked for once more
  // later.
  void setupAutoSwizzling() noexcept;
  // From now on delegates are intercepted as they come. Once the pass has run; nothing otherwise.
  void keepWatch() noexcept;

 private:
  friend struct ZibTestSeam;

  void runPass();
  void lookAgain(const zib::DelegateLook& look);

  std::atomic<bool> isSwizzlingEnabled_{true};
  std::atomic<bool> hasSwizzled_{false};
  std::atomic<bool> isWatching_{false};
};
