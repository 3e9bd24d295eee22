// The system's calls of the host's delegates, as UIKit, UserNotifications and Firebase make them.

#pragma once

#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace test {

using zib::objc::id;

inline void deviceToken(id delegate, id token) {
  zib::send<void>(delegate,
                  zib::selector<"application:didRegisterForRemoteNotificationsWithDeviceToken:">(),
                  sim::uikit::application(), token);
}

inline void registrationFailure(id delegate, id error) {
  zib::send<void>(delegate,
                  zib::selector<"application:didFailToRegisterForRemoteNotificationsWithError:">(),
                  sim::uikit::application(), error);
}

inline bool openURL(id delegate, id url, id options = nullptr) {
  return zib::send<zib::objc::BOOL>(delegate, zib::selector<"application:openURL:options:">(),
                                    sim::uikit::application(), url, options) != 0;
}

inline void openURLContexts(id delegate, id scene, id contexts) {
  zib::send<void>(delegate, zib::selector<"scene:openURLContexts:">(), scene, contexts);
}

inline void willPresent(id delegate, id notification,
                        const zib::Block<void(zib::objc::UInteger)>& completion) {
  zib::send<void>(
      delegate,
      zib::selector<"userNotificationCenter:willPresentNotification:withCompletionHandler:">(),
      sim::usernotifications::center(), notification, completion.raw());
}

inline void didReceive(id delegate, id response, const zib::Block<void()>& completion) {
  zib::send<void>(delegate,
                  zib::selector<"userNotificationCenter:didReceiveNotificationResponse:"
                                "withCompletionHandler:">(),
                  sim::usernotifications::center(), response, completion.raw());
}

inline void fcmToken(id delegate, id token) {
  zib::send<void>(delegate, zib::selector<"messaging:didReceiveRegistrationToken:">(),
                  sim::firebase::messaging(), token);
}

}  // namespace test
