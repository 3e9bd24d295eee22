#include "ZibMessaging/ZibMessaging.h"

#include <cstdio>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/NotificationEvent.h"
#include "ZibMessaging/Private/PresentationOptions.h"
#include "ZibMessaging/Private/TokenText.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibMessaging/ZibSwizzleManager.h"
#include "ZibPlatform/Dispatch/MainQueue.h"
#include "ZibPlatform/FirebaseMessaging/FirebaseMessaging.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"
#include "ZibPlatform/ObjectiveC/Send.h"

using zib::clickedEvent;
using zib::contained;
using zib::deliveredEvent;
using zib::FirebaseMessaging;
using zib::foregroundPresentationOptions;
using zib::logLine;
using zib::notificationEventSchemaURI;
using zib::ShownHexText;
using zib::shownOf;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

namespace {

constexpr double firebaseRetryDelay = 0.1;  // seconds

// The entry points of the runtime object. With automatic integration the interceptors have handled
// the callback already when it arrives here, so these only complete it: otherwise each notification
// would be counted twice.

id init(id self, SEL) { return self; }

void willPresentNotification(id, SEL, id /*center*/, id notification,
                             zib::BlockLayout* completion) {
  UInteger options = 0;
  if (ZibSwizzleManager::shared().isSwizzlingEnabled()) {
    options = foregroundPresentationOptions();
  } else {
    options = ZibMessaging::shared().willPresent(*zib::Borrowed<zib::Notification>(notification));
  }
  zib::Block<void(UInteger)>::call(completion, options);
}

void didReceiveNotificationResponse(id, SEL, id /*center*/, id response,
                                    zib::BlockLayout* completion) {
  if (!ZibSwizzleManager::shared().isSwizzlingEnabled()) {
    ZibMessaging::shared().didReceive(*zib::Borrowed<zib::NotificationResponse>(response));
  }
  zib::Block<void()>::call(completion);
}

void didReceiveRegistrationToken(id, SEL, id /*messaging*/, id token) {
  contained("messaging:didReceiveRegistrationToken:", [&] {
    if (zib::isString(token)) {
      ZibMessaging::shared().setFCMToken(zib::Utf8(token).view());
    }
  });
}

zib::Object makeRuntimeObject() {
  const zib::Class cls =
      zib::ClassBuilder("ZibMessaging", zib::classNamed<"NSObject">())
          .adopting("UNUserNotificationCenterDelegate")
          .method("init", &init)
          .method("userNotificationCenter:willPresentNotification:withCompletionHandler:",
                  &willPresentNotification)
          .method("userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
                  &didReceiveNotificationResponse)
          .method("messaging:didReceiveRegistrationToken:", &didReceiveRegistrationToken)
          .registerClass();
  return zib::Object::adopted(zib::send<id>(cls.object(), zib::selector<"new">()));
}

// The one line that cannot go to a core.
void sayIfThereIsNoCore() {
  if (Zib::isInstalled() && ZibLogger::isInstalled()) return;
  std::fputs("ZibMessaging: configured without a core: its log lines and events go nowhere\n",
             stderr);
}

}  // namespace

std::shared_ptr<ZibMessaging>& ZibMessaging::slot() {
  static zib::NeverDestroyed<std::shared_ptr<ZibMessaging>> instance(
      [] { return std::make_shared<ZibMessaging>(Key()); });
  return *instance;
}

ZibMessaging& ZibMessaging::shared() { return *slot(); }

id ZibMessaging::runtimeObject() {
  static zib::NeverDestroyed<zib::Object> object(&makeRuntimeObject);
  return (*object).raw();
}

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
    requestAuthorization(application);
  });
}

void ZibMessaging::requestAuthorization(const zib::Application& application) {
  namespace options = zib::notificationOptions;
  zib::NotificationCenter::current().requestAuthorization(
      options::badge | options::sound | options::alert,
      [messaging = weak_from_this(), application](bool granted, std::optional<zib::Error> error) {
        contained("the answer to the authorization request", [&] {
          zib::mainQueue::async([messaging, application, granted, error = std::move(error)] {
            contained("the answer to the authorization request",
                      [&] { authorizationAnswered(messaging, application, granted, error); });
          });
        });
      });
}

void ZibMessaging::authorizationAnswered(const std::weak_ptr<ZibMessaging>& weakMessaging,
                                         const zib::Application& application, bool granted,
                                         const std::optional<zib::Error>& error) {
  const auto messaging = weakMessaging.lock();
  if (error) {
    ZibLogger::shared().error("Push authorization error", error);
    if (messaging) {
      messaging->tellDelegate("didFailToRegisterWithError", [&](ZibMessagingDelegate& delegate) {
        delegate.didFailToRegisterWithError(*messaging, *error);
      });
    }
    return;
  }
  if (messaging) messaging->isPushEnabled_ = granted;
  contained("savePushPermission", [&] { ZibStorage::shared().savePushPermission(granted); });
  logLine(granted ? "Push notification authorization: granted"
                  : "Push notification authorization: denied");
  if (!granted) return;
  if (messaging) {
    contained("registerNotificationCategories",
              [&] { messaging->registerNotificationCategories(); });
  }
  // One turn of the main queue later, when the categories are in place.
  zib::mainQueue::async([application] {
    contained("registerForRemoteNotifications",
              [&] { application.registerForRemoteNotifications(); });
  });
}

void ZibMessaging::registerNotificationCategories() {
  zib::NotificationCenter::current().setCategories(
      {{"ZibNotification",
        {{"action_1", "Back"}, {"action_2", "Next"}, {"action_3", "View In App"}}}});
  logLine("Notification categories registered");
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
    tellDelegate("didFailToRegisterWithError", [&](ZibMessagingDelegate& delegate) {
      delegate.didFailToRegisterWithError(*this, error);
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
    tellDelegate("didReceiveToken",
                 [&](ZibMessagingDelegate& delegate) { delegate.didReceiveToken(*this, token); });
  });
}

void ZibMessaging::didReceiveRegistrationToken(std::string_view token) noexcept {
  setFCMToken(token);
}

void ZibMessaging::track(const zib::Dictionary& userInfo, const zib::ConstantString& eventType) {
  if (zib::isTestNotification(userInfo)) return;
  Zib::shared().trackSelfDescribingEvent(
      notificationEventSchemaURI,
      ZibPayloadBuilder::createNotificationPayload(userInfo, eventType));
}

UInteger ZibMessaging::willPresent(const zib::Notification& notification) noexcept {
  contained("willPresent", [&] {
    const zib::Borrowed<zib::Dictionary> userInfo(notification.nativeUserInfo());
    logLine("Notification received in foreground");
    track(*userInfo, deliveredEvent);
    tellDelegate("didReceiveNotification", [&](ZibMessagingDelegate& delegate) {
      delegate.didReceiveNotification(*this, *userInfo);
    });
  });
  return foregroundPresentationOptions();
}

void ZibMessaging::didReceive(const zib::NotificationResponse& response) noexcept {
  contained("didReceive", [&] {
    const zib::Borrowed<zib::Dictionary> userInfo(response.nativeUserInfo());
    logLine("Notification tapped with action: ", zib::Utf8(response.actionText()).view());
    track(*userInfo, clickedEvent);
    tellDelegate("didReceiveNotificationResponse", [&](ZibMessagingDelegate& delegate) {
      delegate.didReceiveNotificationResponse(*this, response);
    });
    ZibDeepLinkHandler::shared().handleNotificationURL(*userInfo);
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
  contained("ensureFirebaseMessagingDelegate", [&] { setFirebaseMessagingDelegateIfNeeded(); });
}

void ZibMessaging::setupAsFirebaseMessagingDelegate() {
  setFirebaseMessagingDelegateIfNeeded();
  zib::mainQueue::after(firebaseRetryDelay, [weakMessaging = weak_from_this()] {
    if (const auto messaging = weakMessaging.lock()) messaging->ensureFirebaseMessagingDelegate();
  });
}

void ZibMessaging::setFirebaseMessagingDelegateIfNeeded() {
  const FirebaseMessaging firebase = FirebaseMessaging::find();
  if (firebase.found() != FirebaseMessaging::Found::instance) return;
  const id delegate = firebase.delegate();
  if (delegate == runtimeObject() || runtimeObject() == nullptr) return;
  if (delegate != nullptr) {
    logLine("ℹ️ Customer has set Firebase MessagingDelegate - SDK will swizzle it");
    return;
  }
  if (firebase.setDelegate(runtimeObject())) {
    logLine("✅ ZibMessaging set as Firebase MessagingDelegate automatically");
  }
}
