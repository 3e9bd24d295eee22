// Makes push depend on a remote switch.

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "ZibMessaging/Private/SharedInstance.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/UIKit/Application.h"

// One instance, for the life of the process, without any state: every call of configurePush() is a
// flow of its own, and a second one repeats everything. Any thread. No operation throws, and what
// the host's functions throw is reported and goes no further.
class ZibPushConfig final : public zib::SharedInstance<ZibPushConfig> {
 public:
  // Gets the content of the app's Firebase property list, to configure Firebase from.
  using FirebaseConfigHandler = std::function<void(const zib::Dictionary&)>;
  // Gets whether the registration for push was started; the user's answer comes later.
  using Completion = std::function<void(bool)>;

  static ZibPushConfig& shared() noexcept;

  explicit ZibPushConfig(Key) {}

  // Fetches the remote push configuration, from the core's endpoint if none is given. If it says
  // that push is on, downloads the app's Firebase property list, stores it, hands it to
  // `firebaseConfigHandler` on a thread of the URL session's, and registers for push on the main
  // thread. `completion` may be empty; it is called once: with true on the main thread, with false
  // on the URL session's thread, or on the caller's before the return if nothing could be fetched.
  void configurePush(const zib::Application& application,
                     std::optional<std::string_view> configEndpoint,
                     FirebaseConfigHandler firebaseConfigHandler,
                     Completion completion = {}) noexcept;

  // Registers for push at once, without a remote configuration.
  void registerForPushSimple(const zib::Application& application) noexcept;

  // Where the latest downloaded property list is stored; none while there is no such file.
  [[nodiscard]] std::optional<std::string> savedFirebasePlistPath() const noexcept;
};
