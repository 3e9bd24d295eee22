// The table of interceptions: which methods of the host's delegates the module stands before.

#pragma once

#include <array>
#include <cstddef>

namespace zib {

// A row of the table.
enum class Row : std::size_t {
  didRegister,
  didFailRegister,
  openURL,
  sceneOpenURL,
  willPresent,
  didReceive,
  fcmToken,
};
inline constexpr std::size_t rowCount = 7;

struct Interception {
  const char* hostSelector;
  const char* interceptorSelector;
  const char* logName;
};

inline constexpr std::array<Interception, rowCount> interceptions{{
    {"application:didRegisterForRemoteNotificationsWithDeviceToken:",
     "zib_didRegister:deviceToken:", "didRegisterForRemoteNotificationsWithDeviceToken"},
    {"application:didFailToRegisterForRemoteNotificationsWithError:", "zib_didFailRegister:error:",
     "didFailToRegisterForRemoteNotificationsWithError"},
    {"application:openURL:options:", "zib_openURL:url:options:", "application:open:options:"},
    {"scene:openURLContexts:", "zib_scene:openURLContexts:", "scene:openURLContexts:"},
    {"userNotificationCenter:willPresentNotification:withCompletionHandler:",
     "zib_willPresent:notification:completionHandler:", "willPresent:withCompletionHandler:"},
    {"userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
     "zib_didReceive:response:completionHandler:", "didReceive:withCompletionHandler:"},
    {"messaging:didReceiveRegistrationToken:", "zib_messaging:didReceiveRegistrationToken:",
     "messaging:didReceiveRegistrationToken:"},
}};

constexpr const Interception& interceptionOf(Row row) {
  return interceptions[static_cast<std::size_t>(row)];
}

}  // namespace zib
