// The messages that UIKit sends to the delegates of an application and of its scenes.

#pragma once

#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim::uikit {

inline constexpr zib::FixedString didRegister =
    "application:didRegisterForRemoteNotificationsWithDeviceToken:";
inline constexpr zib::FixedString didFailToRegister =
    "application:didFailToRegisterForRemoteNotificationsWithError:";
inline constexpr zib::FixedString openURLWithOptions = "application:openURL:options:";
inline constexpr zib::FixedString openURLFromSource =
    "application:openURL:sourceApplication:annotation:";
inline constexpr zib::FixedString handleOpenURL = "application:handleOpenURL:";
inline constexpr zib::FixedString sceneOpenURLContexts = "scene:openURLContexts:";

inline void sendDeviceToken(zib::objc::id delegate, zib::objc::id application,
                            zib::objc::id token) {
  zib::send<void>(delegate, zib::selector<didRegister>(), application, token);
}

inline void sendRegistrationFailure(zib::objc::id delegate, zib::objc::id application,
                                    zib::objc::id error) {
  zib::send<void>(delegate, zib::selector<didFailToRegister>(), application, error);
}

inline bool sendURL(zib::objc::id delegate, zib::objc::id application, zib::objc::id url,
                    zib::objc::id options) {
  return zib::send<zib::objc::BOOL>(delegate, zib::selector<openURLWithOptions>(), application, url,
                                    options) != 0;
}

inline bool sendURLFromSource(zib::objc::id delegate, zib::objc::id application, zib::objc::id url,
                              zib::objc::id source, zib::objc::id annotation) {
  return zib::send<zib::objc::BOOL>(delegate, zib::selector<openURLFromSource>(), application, url,
                                    source, annotation) != 0;
}

inline bool sendURLToHandle(zib::objc::id delegate, zib::objc::id application, zib::objc::id url) {
  return zib::send<zib::objc::BOOL>(delegate, zib::selector<handleOpenURL>(), application, url) !=
         0;
}

inline void sendURLContexts(zib::objc::id delegate, zib::objc::id scene, zib::objc::id contexts) {
  zib::send<void>(delegate, zib::selector<sceneOpenURLContexts>(), scene, contexts);
}

}  // namespace sim::uikit
