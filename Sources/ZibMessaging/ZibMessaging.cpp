#include "ZibMessaging/ZibMessaging.h"

#include <cstdio>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"
#include "ZibMessaging/Private/Authorization.h"
#include "ZibMessaging/Private/CallbackInProgress.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/Deferred.h"
#include "ZibMessaging/Private/FirebaseHookup.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/MessagingFace.h"
#include "ZibMessaging/Private/NotificationEvent.h"
#include "ZibMessaging/Private/PresentationOptions.h"
#include "ZibMessaging/Private/TokenText.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibMessaging/ZibSwizzleManager.h"

using zib::CallbackInProgress;
using zib::clickedEvent;
using zib::contained;
using zib::deliveredEvent;
using zib::foregroundPresentationOptions;
using zib::logLine;
using zib::notificationEventSchemaURI;
using zib::Row;
using zib::ShownHexText;
using zib::shownOf;
using zib::objc::id;
using zib::objc::UInteger;

namespace {

constexpr double firebaseSecondAttemptAfter = 0.1;  // seconds

void track(const zib::Dictionary& userInfo, const zib::ConstantString& eventType) {
  if (zib::isTestNotification(userInfo)) return;
  Zib::shared().trackSelfDescribingEvent(
      notificationEventSchemaURI,
      ZibPayloadBuilder::createNotificationPayload(userInfo, eventType));
}

// The one line that cannot go to a core.
void sayIfThereIsNoCore() {
  if (Zib::isInstalled() && ZibLogger::isInstalled()) return;
  std::fputs("ZibMessaging: configured without a core: its log lines and events go nowhere\n",
             stderr);
}

}  // namespace

ZibMessaging& ZibMessaging::shared() { return instance(); }

id ZibMessaging::runtimeObject() { return zib::messagingFace(); }

template <class Call>
void ZibMessaging::tellDelegate(std::string_view operation, Call call) {
  if (const auto delegate = this->delegate()) contained(operation, [&] { call(*delegate); });
}

void ZibMessaging::configure(const zib::Application&) noexcept {
  contained("configure", [&] {
    if (swizzlingConfigured_) {
      logLine("ZibMessaging already configured");
      return;
    }
    sayIfThereIsNoCore();
    setUpIntegration();
    swizzlingConfigured_ = true;
  });
}

void ZibMessaging::setUpIntegration() {
  const std::optional<ZibConfig> config = Zib::shared().config();
  if (config && !config->autoSwizzlingEnabled) {
    logLine("ℹ️ ZibMessaging: Swizzling disabled - manual integration required");
    ZibSwizzleManager::shared().setSwizzlingEnabled(false);
    return;
  }
  logLine("🚀 ZibMessaging: Setting up automatic swizzling...");
  ZibSwizzleManager::shared().setSwizzlingEnabled(true);
  ZibSwizzleManager::shared().setupAutoSwizzling();
  setupAsNotificationDelegate();
  setupAsFirebaseMessagingDelegate();
}

void ZibMessaging::registerForPush(const zib::Application& application) noexcept {
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
  contained("didRegisterForRemoteNotifications", [&] {
    // Made first: single bytes that are copied as a block right away would stall the processor.
    const ShownHexText shown(deviceToken);
    apnsToken_.store(zib::Bytes(deviceToken.begin(), deviceToken.end()));
    hasReceivedAPNSToken_.store(true, std::memory_order_release);
    logLine("📱 APNS token registered: ", shown.view(), "...");
    logLine("   ℹ️ APNS registered, waiting for fresh FCM token from Firebase...");
  });
}

void ZibMessaging::didFailToRegisterForRemoteNotifications(const zib::Error& error) noexcept {
  contained("didFailToRegisterForRemoteNotifications", [&] {
    ZibLogger::shared().error("Failed to register for push", error);
    tellDelegate("zibMessagingDidFailToRegisterWithError", [&](ZibMessagingDelegate& delegate) {
      delegate.zibMessagingDidFailToRegisterWithError(*this, error);
    });
  });
}

void ZibMessaging::setPushToken(std::span<const std::uint8_t> deviceToken) noexcept {
  didRegisterForRemoteNotifications(deviceToken);
}

void ZibMessaging::setFCMToken(std::string_view token) noexcept {
  contained("setFCMToken", [&] {
    if (!hasReceivedAPNSToken_.load(std::memory_order_acquire)) {
      logLine("⚠️ Ignoring FCM token received before APNS registration: ", shownOf(token),
              "...");
      return;
    }
    logLine("📲 FCM token received (post-APNS): ", shownOf(token), "...");
    fcmToken_.store(std::string(token));
    contained("saveFCMToken", [&] { ZibStorage::shared().saveFCMToken(token); });
    contained("registerPushToken", [&] { Zib::shared().registerPushToken(token); });
    tellDelegate("zibMessagingDidReceiveToken", [&](ZibMessagingDelegate& delegate) {
      delegate.zibMessagingDidReceiveToken(*this, token);
    });
  });
}

void ZibMessaging::didReceiveRegistrationToken(std::string_view token) noexcept {
  setFCMToken(token);
}

UInteger ZibMessaging::willPresent(const zib::Notification& notification) noexcept {
  const CallbackInProgress inProgress(Row::willPresent, notification.native());
  if (inProgress.isNew()) handlePresentation(notification);
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
  if (inProgress.isNew()) handleResponse(response);
}

void ZibMessaging::handleResponse(const zib::NotificationResponse& response) noexcept {
  contained("didReceive", [&] {
    const zib::Dictionary userInfo = zib::Dictionary::retained(response.nativeUserInfo());
    logLine("Notification tapped with action: ", zib::Utf8(response.actionText()).view());
    track(userInfo, clickedEvent);
    tellDelegate("zibMessagingDidReceiveNotificationResponse", [&](ZibMessagingDelegate& delegate) {
      delegate.zibMessagingDidReceiveNotificationResponse(*this, response);
    });
    ZibDeepLinkHandler::shared().handleNotificationURL(userInfo);
  });
}

void ZibMessaging::trackNotificationReceived(const zib::Dictionary& userInfo) noexcept {
  contained("trackNotificationReceived", [&] { track(userInfo, deliveredEvent); });
}

void ZibMessaging::trackNotificationOpened(const zib::Dictionary& userInfo) noexcept {
  contained("trackNotificationOpened", [&] { track(userInfo, clickedEvent); });
}

void ZibMessaging::setupAsNotificationDelegate() noexcept {
  contained("setupAsNotificationDelegate", [&] {
    const auto center = zib::NotificationCenter::current();
    if (center.delegate() != nullptr || runtimeObject() == nullptr) return;
    center.setDelegate(runtimeObject());
    logLine("ZibMessaging set as UNUserNotificationCenterDelegate");
  });
}

void ZibMessaging::ensureFirebaseMessagingDelegate() noexcept {
  contained("ensureFirebaseMessagingDelegate", &zib::becomeFirebaseDelegate);
}

void ZibMessaging::setupAsFirebaseMessagingDelegate() {
  zib::becomeFirebaseDelegate();
  zib::afterWeakly(firebaseSecondAttemptAfter, weak_from_this(), "ensureFirebaseMessagingDelegate",
                   [](ZibMessaging&) { zib::becomeFirebaseDelegate(); });
}
