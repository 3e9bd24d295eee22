#import "NotificationDelegate.h"

#include <cstdio>

#include "ZibMessaging/ZibMessaging.h"
#include "ZibPlatform/ObjectiveC/Bridge.h"

@implementation NotificationDelegate

// The module proposes how to show the notification; the app may choose otherwise.
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:
             (void (^)(UNNotificationPresentationOptions options))completionHandler {
  const auto proposed =
      ZibMessaging::shared().willPresent(zib::Notification::retained(zib::native(notification)));
  std::printf("app    | shows a notification\n");
  completionHandler(proposed);
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler {
  ZibMessaging::shared().didReceive(zib::NotificationResponse::retained(zib::native(response)));
  std::printf("app    | a notification was tapped\n");
  completionHandler();
}

@end
