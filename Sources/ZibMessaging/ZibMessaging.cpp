#include "ZibMessaging/ZibMessaging.h"

#include <cstdio>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"
#include "ZibMessaging/Private/Authorization.h"
#include "ZibMessaging/Private/CallbackInProgress.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/Deferred.h"
#include "ZibMessaging/Private/EventSchema.h"
#include "ZibMessaging/Private/FirebaseHookup.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/MessagingFace.h"
#include "ZibMessaging/Private/NotificationEvent.h"
#include "ZibMessaging/Private/PresentationOptions.h"
#include "ZibMessaging/Private/QuotedText.h"
#include "ZibMessaging/Private/Recording.h"
#include "ZibMessaging/Private/TokenText.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibMessaging/ZibSwizzleManager.h"

using zib::CallbackInProgress;
using zib::clickedEvent;
using zib::contained;
using zib::containedOr;
using zib::deliveredEvent;
using zib::foregroundPresentationOptions;
using zib::logError;
using zib::logLine;
using zib::RecordedCall;
using zib::Row;
using zib::ShownHexText;
using zib::shownOf;
using zib::ValueMap;
using zib::objc::id;
using zib::objc::UInteger;

namespace {

constexpr double firebaseSecondAttemptAfter = 0.1;  // seconds

// On its own, so that what the core throws costs nothing else.
void track(const zib::Dictionary& userInfo, const zib::SharedText& eventType) noexcept {
  contained("trackSelfDescribingEvent", [&] {
    if (zib::isTestNotification(userInfo)) return;
    Zib::shared().trackSelfDescribingEvent(
        zib::notificationEventSchemaURI(),
        ZibPayloadBuilder::createNotificationPayload(userInfo, eventType.text));
  });
}

// Sets the vendor. Why not, where it is refused.
const char* refusalOf(std::string_view vendor, bool isConfigured) {
  if (isConfigured) return " comes after configure() and is not taken";
  switch (zib::setEventVendor(vendor)) {
    case zib::VendorOutcome::isNoVendor:
      return " is refused: letters, digits, \".\", \"-\" and \"_\" are allowed";
    case zib::VendorOutcome::isSetAlready:
      return " is refused: another was set before";
    case zib::VendorOutcome::set:
      break;
  }
  return nullptr;
}

// What cannot go to a core.
void sayWhatIsMissingOfTheCore() {
  const auto say = [](const char* part, const char* what) {
    std::fprintf(stderr, "ZibMessaging: configured without a %s: its %s go nowhere\n", part, what);
  };
  const bool hasLogger = ZibLogger::isInstalled();
  if (Zib::isInstalled()) {
    if (!hasLogger) say("ZibLogger", "log lines");
  } else if (hasLogger) {
    say("Zib", "events");
  } else {
    say("core", "log lines and events");
  }
}

}  // namespace

ZibMessaging& ZibMessaging::shared() noexcept { return instance(); }

// With the runtime's class, so that it is there for whoever looks for it by name.
ZibMessaging::ZibMessaging(Key) { zib::messagingFace(); }

id ZibMessaging::runtimeObject() noexcept { return zib::messagingFace(); }

void ZibMessaging::setDelegate(std::weak_ptr<ZibMessagingDelegate> delegate) noexcept {
  delegate_.store(std::move(delegate));
}

std::shared_ptr<ZibMessagingDelegate> ZibMessaging::delegate() const noexcept {
  return delegate_.read([](const auto& delegate) { return delegate.lock(); });
}

std::optional<std::string> ZibMessaging::fcmToken() const noexcept {
  return containedOr(std::optional<std::string>(), "fcmToken", [&] { return fcmToken_.load(); });
}

std::optional<zib::Bytes> ZibMessaging::apnsToken() const noexcept {
  if (!hasReceivedAPNSToken_.load(std::memory_order_acquire)) return std::nullopt;
  return containedOr(std::optional<zib::Bytes>(), "apnsToken", [&] { return apnsToken_.load(); });
}

bool ZibMessaging::setEventVendor(std::string_view vendor) noexcept {
  return containedOr(false, "setEventVendor", [&] {
    const char* const refusal = refusalOf(vendor, swizzlingConfigured_);
    if (refusal == nullptr) return true;
    std::string line = "ZibMessaging: the event vendor ";
    zib::appendQuoted(line, vendor);
    logError(line.append(refusal));
    return false;
  });
}

bool ZibMessaging::setDelegateDiscovery(zib::DelegateDiscovery discovery) noexcept {
  const RecordedCall call("setDelegateDiscovery", [&] {
    const bool isContinuous = discovery == zib::DelegateDiscovery::continuous;
    return ValueMap{{"value", isContinuous ? "continuous" : "onceWithRetry"}};
  });
  return containedOr(false, "setDelegateDiscovery", [&] {
    if (swizzlingConfigured_) {
      logError("ZibMessaging: the delegate discovery comes after configure() and is not taken");
      return false;
    }
    discovery_ = discovery;
    return true;
  });
}

template <class Call>
void ZibMessaging::tellDelegate(const char* operation, Call call) {
  const auto delegate = this->delegate();
  if (!delegate) return;
  const zib::HostsTurn turn;
  contained(operation, [&] { call(*delegate); });
}

void ZibMessaging::configure(const zib::Application&) noexcept {
  const RecordedCall call("configure");
  contained("configure", [&] {
    // Taken first: what the core is asked for meanwhile may call again.
    if (swizzlingConfigured_.exchange(true)) {
      logLine("ZibMessaging already configured");
      return;
    }
    sayWhatIsMissingOfTheCore();
    setUpIntegration();
  });
}

// Each step on its own, so that what one finds broken costs the others nothing.
void ZibMessaging::setUpIntegration() noexcept {
  if (runtimeObject() == nullptr) {
    logError("ZibMessaging: the class name \"ZibMessaging\" is taken by something else");
  }
  const auto config = containedOr(std::optional<ZibConfig>(), "the core's configuration",
                                  [] { return Zib::shared().config(); });
  if (config && !config->autoSwizzlingEnabled) {
    logLine("ℹ️ ZibMessaging: Swizzling disabled - manual integration required");
    ZibSwizzleManager::shared().setSwizzlingEnabled(false);
    return;
  }
  logLine("🚀 ZibMessaging: Setting up automatic swizzling...");
  ZibSwizzleManager::shared().setSwizzlingEnabled(true);
  ZibSwizzleManager::shared().setupAutoSwizzling();
  if (discovery_ == zib::DelegateDiscovery::continuous) {
    ZibSwizzleManager::shared().keepWatch();
  }
  setupAsNotificationDelegate();
  setupAsFirebaseMessagingDelegate();
}

void ZibMessaging::registerForPush(const zib::Application& application) noexcept {
  const RecordedCall call("registerForPush");
  contained("registerForPush", [&] {
    logLine("Registering for push notifications");
    zib::Authorization::request(weak_from_this(), application);
  });
}

void ZibMessaging::authorizationFailed(const zib::Error& error) {
  tellDelegate("zibMessagingDidFailToRegisterWithError", [&](ZibMessagingDelegate& delegate) {
    delegate.zibMessagingDidFailToRegisterWithError(*this, error);
  });
}

void ZibMessaging::didRegisterForRemoteNotifications(
    std::span<const std::uint8_t> deviceToken) noexcept {
  const RecordedCall call("didRegisterForRemoteNotifications", [&] {
    return ValueMap{{"hex", zib::Bytes(deviceToken.begin(), deviceToken.end())}};
  });
  contained("didRegisterForRemoteNotifications", [&] { takeDeviceToken(deviceToken); });
}

void ZibMessaging::takeDeviceToken(std::span<const std::uint8_t> token) {
  apnsToken_.store(zib::Bytes(token.begin(), token.end()));
  hasReceivedAPNSToken_.store(true, std::memory_order_release);
  logLine("📱 APNS token registered: ", ShownHexText(token), "...");
  logLine("   ℹ️ APNS registered, waiting for fresh FCM token from Firebase...");
}

void ZibMessaging::didFailToRegisterForRemoteNotifications(const zib::Error& error) noexcept {
  const RecordedCall call("didFailToRegisterForRemoteNotifications", [&] {
    return ValueMap{{"error", ValueMap{{"domain", error.domain},
                                       {"code", error.code},
                                       {"description", error.description}}}};
  });
  contained("didFailToRegisterForRemoteNotifications", [&] {
    logError("Failed to register for push", error);
    tellDelegate("zibMessagingDidFailToRegisterWithError", [&](ZibMessagingDelegate& delegate) {
      delegate.zibMessagingDidFailToRegisterWithError(*this, error);
    });
  });
}

void ZibMessaging::setPushToken(std::span<const std::uint8_t> deviceToken) noexcept {
  const RecordedCall call("setPushToken", [&] {
    return ValueMap{{"hex", zib::Bytes(deviceToken.begin(), deviceToken.end())}};
  });
  didRegisterForRemoteNotifications(deviceToken);
}

void ZibMessaging::setFCMToken(std::string_view token) noexcept {
  const RecordedCall call("setFCMToken", [&] { return ValueMap{{"token", token}}; });
  contained("setFCMToken", [&] { takeFCMToken(token); });
}

void ZibMessaging::takeFCMToken(std::string_view token) {
  if (!hasReceivedAPNSToken_.load(std::memory_order_acquire)) {
    logLine("⚠️ Ignoring FCM token received before APNS registration: ", shownOf(token), "...");
    return;
  }
  logLine("📲 FCM token received (post-APNS): ", shownOf(token), "...");
  fcmToken_.store(std::string(token));
  contained("saveFCMToken", [&] { ZibStorage::shared().saveFCMToken(token); });
  contained("registerPushToken", [&] { Zib::shared().registerPushToken(token); });
  tellDelegate("zibMessagingDidReceiveToken", [&](ZibMessagingDelegate& delegate) {
    delegate.zibMessagingDidReceiveToken(*this, token);
  });
}

void ZibMessaging::didReceiveRegistrationToken(std::string_view token) noexcept {
  const RecordedCall call("didReceiveRegistrationToken", [&] {
    return ValueMap{{"token", token}};
  });
  setFCMToken(token);
}

UInteger ZibMessaging::willPresent(const zib::Notification& notification) noexcept {
  const CallbackInProgress inProgress(Row::willPresent, notification.native());
  if (inProgress.isNew()) {
    const RecordedCall call("willPresent", [&] {
      return ValueMap{{"userInfo", zib::recording::valuesOf(notification.userInfo())}};
    });
    handlePresentation(notification);
  } else {
    CallbackInProgress::noteHandedIn(Row::willPresent);
  }
  return foregroundPresentationOptions();
}

void ZibMessaging::handlePresentation(const zib::Notification& notification) noexcept {
  contained("willPresent", [&] {
    const zib::Dictionary userInfo = notification.userInfo();
    logLine("Notification received in foreground");
    track(userInfo, deliveredEvent);
    tellDelegate("zibMessagingDidReceiveNotification", [&](ZibMessagingDelegate& delegate) {
      delegate.zibMessagingDidReceiveNotification(*this, userInfo);
    });
  });
}

void ZibMessaging::didReceive(const zib::NotificationResponse& response) noexcept {
  const CallbackInProgress inProgress(Row::didReceive, response.native());
  if (inProgress.isNew()) {
    const RecordedCall call("didReceive", [&] {
      return ValueMap{{"userInfo", zib::recording::valuesOf(response.userInfo())},
                      {"action", response.actionIdentifier().utf8()}};
    });
    handleResponse(response);
  } else {
    CallbackInProgress::noteHandedIn(Row::didReceive);
  }
}

void ZibMessaging::handleResponse(const zib::NotificationResponse& response) noexcept {
  contained("didReceive", [&] {
    const zib::Dictionary userInfo = response.userInfo();
    logLine("Notification tapped with action: ", zib::Utf8(response.actionIdentifier()).view());
    track(userInfo, clickedEvent);
    tellDelegate("zibMessagingDidReceiveNotificationResponse", [&](ZibMessagingDelegate& delegate) {
      delegate.zibMessagingDidReceiveNotificationResponse(*this, response);
    });
    ZibDeepLinkHandler::shared().handleNotificationURL(userInfo);
  });
}

void ZibMessaging::trackNotificationReceived(const zib::Dictionary& userInfo) noexcept {
  const RecordedCall call("trackNotificationReceived", [&] {
    return ValueMap{{"userInfo", zib::recording::valuesOf(userInfo)}};
  });
  track(userInfo, deliveredEvent);
}

void ZibMessaging::trackNotificationOpened(const zib::Dictionary& userInfo) noexcept {
  const RecordedCall call("trackNotificationOpened", [&] {
    return ValueMap{{"userInfo", zib::recording::valuesOf(userInfo)}};
  });
  track(userInfo, clickedEvent);
}

void ZibMessaging::setupAsNotificationDelegate() noexcept {
  const RecordedCall call("setupAsNotificationDelegate");
  contained("setupAsNotificationDelegate", [&] {
    const auto center = zib::NotificationCenter::current();
    if (!center) {
      zib::logError("ZibMessaging: this process has no notification centre");
      return;
    }
    if (center.delegate() != nullptr || runtimeObject() == nullptr) return;
    center.setDelegate(runtimeObject());
    logLine("ZibMessaging set as UNUserNotificationCenterDelegate");
  });
}

void ZibMessaging::ensureFirebaseMessagingDelegate() noexcept {
  const RecordedCall call("ensureFirebaseMessagingDelegate");
  contained("ensureFirebaseMessagingDelegate", &zib::becomeFirebaseDelegate);
}

void ZibMessaging::setupAsFirebaseMessagingDelegate() noexcept {
  ensureFirebaseMessagingDelegate();
  contained("the second look for Firebase", [&] {
    zib::afterWeakly(firebaseSecondAttemptAfter, weak_from_this(),
                     "ensureFirebaseMessagingDelegate",
                     [](ZibMessaging&) { zib::becomeFirebaseDelegate(); });
  });
}
