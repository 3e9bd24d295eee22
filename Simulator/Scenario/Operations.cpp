#include "Simulator/Scenario/Operations.h"

#include "Simulator/Scenario/Kinds.h"

namespace sim {
namespace {

using Result = std::optional<Json>;
constexpr std::nullopt_t nothing = std::nullopt;

// Fields that several operations have.
template <class T>
Record<T> tokenBytes() {
  return Record<T>().required("hex", &T::token, kinds::hex(), "the device token's bytes");
}

template <class T>
Record<T> tokenText() {
  return Record<T>().required("token", &T::token, kinds::text(), "the registration token");
}

template <class T>
Record<T> userInfo() {
  return Record<T>().required("userInfo", &T::userInfo, kinds::payload(),
                              "the notification's payload");
}

// NOLINTNEXTLINE(readability-function-size): a table
std::vector<OperationRow> makeRows() {
  using namespace operations;
  return {
      {"setupAutoSwizzling", "looks for delegates and integrates itself into them",
       Record<SetupAutoSwizzling>(),
       [](const SetupAutoSwizzling&) -> Result {
         Module::setupAutoSwizzling();
         return nothing;
       }},
      {"setupAsNotificationDelegate", "becomes the notification centre's delegate",
       Record<SetupAsNotificationDelegate>(),
       [](const SetupAsNotificationDelegate&) -> Result {
         Module::setupAsNotificationDelegate();
         return nothing;
       }},
      {"ensureFirebaseMessagingDelegate", "becomes Firebase's delegate",
       Record<EnsureFirebaseMessagingDelegate>(),
       [](const EnsureFirebaseMessagingDelegate&) -> Result {
         Module::ensureFirebaseMessagingDelegate();
         return nothing;
       }},
      {"didRegisterForRemoteNotifications", "takes the device token",
       tokenBytes<DidRegisterForRemoteNotifications>(),
       [](const DidRegisterForRemoteNotifications& call) -> Result {
         Module::didRegisterForRemoteNotifications(call.token);
         return nothing;
       }},
      {"setPushToken", "takes the device token", tokenBytes<SetPushToken>(),
       [](const SetPushToken& call) -> Result {
         Module::setPushToken(call.token);
         return nothing;
       }},
      {"didFailToRegisterForRemoteNotifications", "takes the failure",
       Record<DidFailToRegisterForRemoteNotifications>().required(
           "error", &DidFailToRegisterForRemoteNotifications::error, kinds::error(), "the error"),
       [](const DidFailToRegisterForRemoteNotifications& call) -> Result {
         Module::didFailToRegisterForRemoteNotifications(call.error);
         return nothing;
       }},
      {"setFCMToken", "takes the registration token", tokenText<SetFCMToken>(),
       [](const SetFCMToken& call) -> Result {
         Module::setFCMToken(call.token);
         return nothing;
       }},
      {"didReceiveRegistrationToken", "takes the registration token",
       tokenText<DidReceiveRegistrationToken>(),
       [](const DidReceiveRegistrationToken& call) -> Result {
         Module::didReceiveRegistrationToken(call.token);
         return nothing;
       }},
      {"willPresent", "a notification is about to be presented", userInfo<WillPresent>(),
       [](const WillPresent& call) -> Result { return Module::willPresent(call.userInfo); }},
      {"didReceive", "the user acted on a notification",
       userInfo<DidReceive>().optional("action", &DidReceive::action, kinds::text(),
                                       "the action's identifier"),
       [](const DidReceive& call) -> Result {
         Module::didReceive(call.userInfo, call.action);
         return nothing;
       }},
      {"trackNotificationReceived", "tracks the notification as delivered",
       userInfo<TrackNotificationReceived>(),
       [](const TrackNotificationReceived& call) -> Result {
         Module::trackNotificationReceived(call.userInfo);
         return nothing;
       }},
      {"trackNotificationOpened", "tracks the notification as clicked",
       userInfo<TrackNotificationOpened>(),
       [](const TrackNotificationOpened& call) -> Result {
         Module::trackNotificationOpened(call.userInfo);
         return nothing;
       }},
      {"handleNotificationURL", "opens the notification's link", userInfo<HandleNotificationURL>(),
       [](const HandleNotificationURL& call) -> Result {
         return Module::handleNotificationURL(call.userInfo);
       }},
      {"handleURL", "takes a URL that the app was opened with",
       Record<HandleURL>()
           .required("url", &HandleURL::url, kinds::url(), "the URL")
           .required("source", &HandleURL::source, kinds::text(), "where it comes from"),
       [](const HandleURL& call) -> Result { return Module::handleURL(call.url, call.source); }},
      {"createNotificationPayload", "gives the event of a notification",
       userInfo<CreateNotificationPayload>().required(
           "eventType", &CreateNotificationPayload::eventType, kinds::text(), "the event's type"),
       [](const CreateNotificationPayload& call) -> Result {
         return Module::createNotificationPayload(call.userInfo, call.eventType);
       }},
      {"createEventPayload", "gives an event of the host's",
       Record<CreateEventPayload>()
           .required("eventName", &CreateEventPayload::eventName, kinds::text(), "its name")
           .optional("properties", &CreateEventPayload::properties, kinds::payloadOrNull(),
                     "its properties"),
       [](const CreateEventPayload& call) -> Result {
         return Module::createEventPayload(call.eventName, call.properties);
       }},
      {"setDelegateDiscovery", "how the module finds delegates, before it is configured",
       Record<SetDelegateDiscovery>().required("value", &SetDelegateDiscovery::discovery,
                                               kinds::oneOf<DelegateDiscovery>(),
                                               "once, with a retry, or as they come"),
       [](const SetDelegateDiscovery& call) -> Result {
         Module::setDelegateDiscovery(call.discovery);
         return nothing;
       }},
  };
}

}  // namespace

const std::vector<OperationRow>& operationRows() {
  static const std::vector<OperationRow> rows = makeRows();
  return rows;
}

}  // namespace sim
