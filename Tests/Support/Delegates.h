// The system's calls of one delegate, which need not be the one that is set.

#pragma once

#include "Simulator/FirebaseMessaging/DelegateMessages.h"
#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Simulator/UIKit/DelegateMessages.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/DelegateMessages.h"
#include "Simulator/UserNotifications/UserNotifications.h"

namespace test {

using zib::objc::id;

inline void deviceToken(id delegate, id token) {
  sim::uikit::sendDeviceToken(delegate, sim::uikit::application(), token);
}

inline void registrationFailure(id delegate, id error) {
  sim::uikit::sendRegistrationFailure(delegate, sim::uikit::application(), error);
}

inline bool openURL(id delegate, id url, id options = nullptr) {
  return sim::uikit::sendURL(delegate, sim::uikit::application(), url, options);
}

inline void openURLContexts(id delegate, id scene, id contexts) {
  sim::uikit::sendURLContexts(delegate, scene, contexts);
}

inline void willPresent(id delegate, id notification,
                        const sim::usernotifications::PresentationCompletion& completion) {
  sim::usernotifications::sendNotification(delegate, sim::usernotifications::center(), notification,
                                           completion);
}

inline void didReceive(id delegate, id response,
                       const sim::usernotifications::ResponseCompletion& completion) {
  sim::usernotifications::sendResponse(delegate, sim::usernotifications::center(), response,
                                       completion);
}

inline void fcmToken(id delegate, id token) {
  sim::firebase::sendToken(delegate, sim::firebase::messaging(), token);
}

}  // namespace test
