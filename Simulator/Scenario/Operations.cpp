#include "Simulator/Scenario/Operations.h"

#include <map>

#include "Simulator/Scenario/Fields.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibMessaging/ZibSwizzleManager.h"

namespace sim {
namespace {

using zib::Object;

using Operation = std::optional<Json> (*)(const Json& arguments);

// NOLINTNEXTLINE(readability-function-size): a table
const std::map<std::string, Operation>& table() {
  static const std::map<std::string, Operation> operations{
      {"setupAutoSwizzling",
       [](const Json&) -> std::optional<Json> {
         ZibSwizzleManager::shared().setupAutoSwizzling();
         return std::nullopt;
       }},
      {"setupAsNotificationDelegate",
       [](const Json&) -> std::optional<Json> {
         ZibMessaging::shared().setupAsNotificationDelegate();
         return std::nullopt;
       }},
      {"ensureFirebaseMessagingDelegate",
       [](const Json&) -> std::optional<Json> {
         ZibMessaging::shared().ensureFirebaseMessagingDelegate();
         return std::nullopt;
       }},
      {"didRegisterForRemoteNotifications",
       [](const Json& arguments) -> std::optional<Json> {
         ZibMessaging::shared().didRegisterForRemoteNotifications(bytesOf(arguments));
         return std::nullopt;
       }},
      {"setPushToken",
       [](const Json& arguments) -> std::optional<Json> {
         ZibMessaging::shared().setPushToken(bytesOf(arguments));
         return std::nullopt;
       }},
      {"didFailToRegisterForRemoteNotifications",
       [](const Json& arguments) -> std::optional<Json> {
         ZibMessaging::shared().didFailToRegisterForRemoteNotifications(
             arguments.at("error").is_null() ? zib::Error::fromNative(nullptr)
                                             : errorOf(arguments));
         return std::nullopt;
       }},
      {"setFCMToken",
       [](const Json& arguments) -> std::optional<Json> {
         ZibMessaging::shared().setFCMToken(arguments.at("token").get<std::string>());
         return std::nullopt;
       }},
      {"didReceiveRegistrationToken",
       [](const Json& arguments) -> std::optional<Json> {
         ZibMessaging::shared().didReceiveRegistrationToken(
             arguments.at("token").get<std::string>());
         return std::nullopt;
       }},
      {"willPresent",
       [](const Json& arguments) -> std::optional<Json> {
         const Object notification = usernotifications::makeNotification(userInfoOf(arguments));
         return ZibMessaging::shared().willPresent(zib::Notification::retained(notification.raw()));
       }},
      {"didReceive",
       [](const Json& arguments) -> std::optional<Json> {
         const Object response =
             usernotifications::makeResponse(userInfoOf(arguments), actionOf(arguments));
         ZibMessaging::shared().didReceive(zib::NotificationResponse::retained(response.raw()));
         return std::nullopt;
       }},
      {"trackNotificationReceived",
       [](const Json& arguments) -> std::optional<Json> {
         ZibMessaging::shared().trackNotificationReceived(dictionaryOf(arguments));
         return std::nullopt;
       }},
      {"trackNotificationOpened",
       [](const Json& arguments) -> std::optional<Json> {
         ZibMessaging::shared().trackNotificationOpened(dictionaryOf(arguments));
         return std::nullopt;
       }},
      {"handleNotificationURL",
       [](const Json& arguments) -> std::optional<Json> {
         return ZibDeepLinkHandler::shared().handleNotificationURL(dictionaryOf(arguments));
       }},
      {"handleURL",
       [](const Json& arguments) -> std::optional<Json> {
         return ZibDeepLinkHandler::shared().handleURL(
             urlFrom(arguments.at("url").get<std::string>()),
             arguments.at("source").get<std::string>());
       }},
      {"createNotificationPayload",
       [](const Json& arguments) -> std::optional<Json> {
         return jsonFrom(ZibPayloadBuilder::createNotificationPayload(
             dictionaryOf(arguments), arguments.at("eventType").get<std::string>()));
       }},
      {"createEventPayload",
       [](const Json& arguments) -> std::optional<Json> {
         std::optional<zib::ValueMap> properties;
         if (const auto given = arguments.find("properties");
             given != arguments.end() && !given->is_null()) {
           properties = *valueFromJson(*given).get<zib::ValueMap>();
         }
         return jsonFrom(ZibPayloadBuilder::createEventPayload(
             arguments.at("eventName").get<std::string>(), properties));
       }},
  };
  return operations;
}

}  // namespace

std::optional<Json> callOperation(const std::string& name, const Json& arguments) {
  return table().at(name)(arguments);
}

}  // namespace sim
