#include "Simulator/Host/Module.h"

#include "Simulator/Host/RecordingMessagingDelegate.h"
#include "Simulator/Json/Values.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibMessaging/Private/TokenText.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibMessaging/ZibSwizzleManager.h"

namespace sim {
namespace {

zib::Application application() { return zib::Application::retained(uikit::application()); }

}  // namespace

void Module::setDelegate() {
  delegate_ = std::make_shared<RecordingMessagingDelegate>();
  ZibMessaging::shared().setDelegate(delegate_);
}

void Module::letDelegateGo() { delegate_.reset(); }

void Module::setURLDelegate(std::optional<bool> answer) {
  if (!answer) {
    ZibDeepLinkHandler::shared().setURLDelegate({});
    return;
  }
  ZibDeepLinkHandler::shared().setURLDelegate([answer = *answer](const zib::URL& url) {
    Timeline::shared().add("urlDelegate", {{"url", url.absoluteString()}, {"handled", answer}});
    return answer;
  });
}

void Module::setSwizzlingEnabled(bool isEnabled) {
  ZibSwizzleManager::shared().setSwizzlingEnabled(isEnabled);
}

void Module::configure() { ZibMessaging::shared().configure(application()); }

void Module::registerForPush() { ZibMessaging::shared().registerForPush(application()); }

void Module::registerForPushSimple() {
  ZibPushConfig::shared().registerForPushSimple(application());
}

void Module::configurePush(const std::optional<std::string>& endpoint,
                           const std::function<void(const Json& config)>& configured,
                           const std::function<void(bool isRegistering)>& completion) {
  ZibPushConfig::shared().configurePush(
      application(), endpoint,
      [configured](const zib::Dictionary& config) {
        configured(jsonFromObject(config.native().raw()));
      },
      completion);
}

void Module::setupAutoSwizzling() { ZibSwizzleManager::shared().setupAutoSwizzling(); }

void Module::setupAsNotificationDelegate() { ZibMessaging::shared().setupAsNotificationDelegate(); }

void Module::ensureFirebaseMessagingDelegate() {
  ZibMessaging::shared().ensureFirebaseMessagingDelegate();
}

void Module::didRegisterForRemoteNotifications(std::span<const std::uint8_t> token) {
  ZibMessaging::shared().didRegisterForRemoteNotifications(token);
}

void Module::didFailToRegisterForRemoteNotifications(const std::optional<zib::Error>& error) {
  ZibMessaging::shared().didFailToRegisterForRemoteNotifications(
      error ? *error : zib::Error::fromNative(nullptr));
}

void Module::setPushToken(std::span<const std::uint8_t> token) {
  ZibMessaging::shared().setPushToken(token);
}

void Module::setFCMToken(const std::string& token) { ZibMessaging::shared().setFCMToken(token); }

void Module::didReceiveRegistrationToken(const std::string& token) {
  ZibMessaging::shared().didReceiveRegistrationToken(token);
}

zib::objc::UInteger Module::willPresent(const zib::ValueMap& userInfo) {
  const zib::Object notification = usernotifications::makeNotification(userInfo);
  return ZibMessaging::shared().willPresent(zib::Notification::retained(notification.raw()));
}

void Module::didReceive(const zib::ValueMap& userInfo, const std::string& action) {
  const zib::Object response = usernotifications::makeResponse(userInfo, action);
  ZibMessaging::shared().didReceive(zib::NotificationResponse::retained(response.raw()));
}

void Module::trackNotificationReceived(const zib::ValueMap& userInfo) {
  ZibMessaging::shared().trackNotificationReceived(zib::Dictionary::from(userInfo));
}

void Module::trackNotificationOpened(const zib::ValueMap& userInfo) {
  ZibMessaging::shared().trackNotificationOpened(zib::Dictionary::from(userInfo));
}

bool Module::handleNotificationURL(const zib::ValueMap& userInfo) {
  return ZibDeepLinkHandler::shared().handleNotificationURL(zib::Dictionary::from(userInfo));
}

bool Module::handleURL(const std::string& url, const std::string& source) {
  return ZibDeepLinkHandler::shared().handleURL(zib::URL::parse(url).value(), source);
}

Json Module::createNotificationPayload(const zib::ValueMap& userInfo,
                                       const std::string& eventType) {
  return jsonFrom(
      ZibPayloadBuilder::createNotificationPayload(zib::Dictionary::from(userInfo), eventType));
}

Json Module::createEventPayload(const std::string& eventName,
                                const std::optional<zib::ValueMap>& properties) {
  return jsonFrom(ZibPayloadBuilder::createEventPayload(eventName, properties));
}

Json Module::state() {
  const ZibMessaging& messaging = ZibMessaging::shared();
  const auto fcmToken = messaging.fcmToken();
  const auto apnsToken = messaging.apnsToken();
  const auto plistPath = ZibPushConfig::shared().savedFirebasePlistPath();
  return {{"isPushEnabled", messaging.isPushEnabled()},
          {"fcmToken", fcmToken ? Json(*fcmToken) : Json()},
          {"apnsToken", apnsToken ? Json(zib::hexText(*apnsToken)) : Json()},
          {"isSwizzlingEnabled", ZibSwizzleManager::shared().isSwizzlingEnabled()},
          {"savedFirebasePlistPath", plistPath ? Json(*plistPath) : Json()}};
}

}  // namespace sim
