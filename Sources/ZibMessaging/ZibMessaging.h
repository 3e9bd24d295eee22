// The entry object of the messaging module.

#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ZibMessaging/Private/Guarded.h"
#include "ZibMessaging/Private/SharedInstance.h"
#include "ZibMessaging/ZibMessagingDelegate.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/UIKit/Application.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

namespace zib {

// How the module finds the delegates of a host that it integrates itself into.
enum class DelegateDiscovery : std::uint8_t {
  // When configure() runs, and once more within a second for those that are not there yet.
  onceWithRetry,
  // As they come, at any time: also a tap that starts the app, a scene that connects long after the
  // launch and a delegate that is set late are not lost.
  continuous,
};

class Authorization;
struct Interceptors;

}  // namespace zib

// Holds the module's push state, and is what the platform's notification centre and Firebase
// Messaging call back when the host has no delegates of its own. One instance, for the life of the
// process. No operation throws. All but configure() may be called on any thread, and run on it.
class ZibMessaging final : public zib::SharedInstance<ZibMessaging> {
 public:
  static ZibMessaging& shared() noexcept;

  explicit ZibMessaging(Key);

  // Held weakly.
  void setDelegate(std::weak_ptr<ZibMessagingDelegate> delegate) noexcept;
  void setDelegate(std::nullptr_t) noexcept { setDelegate(std::weak_ptr<ZibMessagingDelegate>()); }
  [[nodiscard]] std::shared_ptr<ZibMessagingDelegate> delegate() const noexcept;

  // The user's latest answer that came without an error.
  [[nodiscard]] bool isPushEnabled() const noexcept { return isPushEnabled_; }
  // The latest FCM token that was accepted.
  [[nodiscard]] std::optional<std::string> fcmToken() const noexcept;
  // The latest device token.
  [[nodiscard]] std::optional<zib::Bytes> apnsToken() const noexcept;

  // The vendor in the schema of the events, in place of the one that the module was built with: for
  // hosts that do not build it themselves. Once, before configure(); otherwise, and for a text with
  // anything but letters, digits, ".", "-" and "_", it is refused with an error line and false.
  bool setEventVendor(std::string_view vendor) noexcept;

  // Before configure(), which uses it; later it is refused with an error line and false.
  bool setDelegateDiscovery(zib::DelegateDiscovery discovery) noexcept;
  [[nodiscard]] zib::DelegateDiscovery delegateDiscovery() const noexcept { return discovery_; }

  // Integrates the module into the host, or leaves that to the host, as the core's configuration
  // says; without a configuration it integrates. Once, on the main thread, at start-up: a second
  // call only logs. The application is not used yet.
  void configure(const zib::Application& application) noexcept;

  // Asks the user for permission, and the system for a device token once it is granted. Both
  // answers arrive later, on the main thread.
  void registerForPush(const zib::Application& application) noexcept;

  // What the application delegate was told. With automatic integration the module hears of it
  // itself; otherwise the host forwards it. setPushToken is the same as the first.
  void didRegisterForRemoteNotifications(std::span<const std::uint8_t> deviceToken) noexcept;
  void didFailToRegisterForRemoteNotifications(const zib::Error& error) noexcept;
  void setPushToken(std::span<const std::uint8_t> deviceToken) noexcept;

  // An FCM registration token. Dropped, with a warning, before the first device
  // token: Firebase issues a fresh one after that, and only the fresh one is worth storing.
  // didReceiveRegistrationToken is the same.
  void setFCMToken(std::string_view token) noexcept;
  void didReceiveRegistrationToken(std::string_view token) noexcept;

  // Becomes Firebase Messaging's delegate if Firebase is there and has none. One attempt, on the
  // caller's thread; for hosts that configure Firebase after configure().
  void ensureFirebaseMessagingDelegate() noexcept;

  // A notification is about to be presented in the foreground: reports it, and gives the
  // UNNotificationPresentationOptions to present it with. While the module handles that
  // notification already, or passes it on to the host, it counts once: then this only gives the
  // options.
  zib::objc::UInteger willPresent(const zib::Notification& notification) noexcept;
  // The user acted on a notification: reports it and opens its link. Nothing while the module has
  // that response in hand already.
  void didReceive(const zib::NotificationResponse& response) noexcept;

  // Report a notification without a log line, a call of the delegate or a link. Test notifications
  // are not reported.
  void trackNotificationReceived(const zib::Dictionary& userInfo) noexcept;
  void trackNotificationOpened(const zib::Dictionary& userInfo) noexcept;

  // Becomes the notification centre's delegate if it has none.
  void setupAsNotificationDelegate() noexcept;

  // The module's object in the runtime, of the class "ZibMessaging": what the notification centre
  // and Firebase hold as their delegate. It lives as long as the process, and is nil if the name of
  // the class is taken.
  static zib::objc::id runtimeObject() noexcept;

 private:
  friend struct ZibTestSeam;
  friend class zib::Authorization;
  friend struct zib::Interceptors;

  void setUpIntegration() noexcept;
  void setupAsFirebaseMessagingDelegate() noexcept;
  void authorizationFailed(const zib::Error& error);
  void authorizationAnswered(bool granted) noexcept { isPushEnabled_ = granted; }
  // What willPresent() and didReceive() do when the module does not have the notification in hand
  // already.
  void handlePresentation(const zib::Notification& notification) noexcept;
  void handleResponse(const zib::NotificationResponse& response) noexcept;
  void takeDeviceToken(std::span<const std::uint8_t> token);
  void takeFCMToken(std::string_view token);
  template <class Call>
  void tellDelegate(const char* operation, Call call);

  zib::Guarded<std::weak_ptr<ZibMessagingDelegate>> delegate_;
  std::atomic<zib::DelegateDiscovery> discovery_{zib::DelegateDiscovery::onceWithRetry};
  std::atomic<bool> isPushEnabled_{false};
  zib::Guarded<std::optional<std::string>> fcmToken_;
  // Of use once there is one, as the next says.
  zib::Guarded<zib::Bytes> apnsToken_;
  std::atomic<bool> hasReceivedAPNSToken_{false};
  std::atomic<bool> swizzlingConfigured_{false};
};
