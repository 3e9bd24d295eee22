// In C++, since the module's headers are C++ and declare the object runtime themselves: do not
// include them in Objective-C++ files. The objects of the platform come as zib::objc::id, and each
// of the module's types takes one in.

#include "PrintingCore/PrintingCore.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"

using zib::objc::id;

extern "C" {

void startMessaging(id application) {
  // The core library comes first. Yours starts itself in its own way; what counts is that its
  // configuration says that this app integrates by hand.
  installPrintingCore({.autoSwizzlingEnabled = false});

  ZibMessaging::shared().configure(zib::Application::retained(application));

  // Asks the user for permission, now or whenever your app would rather ask.
  ZibMessaging::shared().registerForPush(zib::Application::retained(application));
}

void messagingDidRegister(id deviceToken) {
  ZibMessaging::shared().didRegisterForRemoteNotifications(zib::bytesOf(deviceToken));
}

void messagingDidFailToRegister(id error) {
  ZibMessaging::shared().didFailToRegisterForRemoteNotifications(zib::Error::fromNative(error));
}

void messagingDidOpenURL(id url) {
  if (const auto opened = zib::URL::retained(url)) {
    ZibDeepLinkHandler::shared().handleURL(*opened, "app_delegate");
  }
}

zib::objc::UInteger messagingWillPresent(id notification) {
  return ZibMessaging::shared().willPresent(zib::Notification::retained(notification));
}

void messagingDidReceive(id response) {
  ZibMessaging::shared().didReceive(zib::NotificationResponse::retained(response));
}

}  // extern "C"
