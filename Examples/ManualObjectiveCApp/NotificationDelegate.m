#import "NotificationDelegate.h"

#include <stdio.h>

#import "ZibObjectiveC.h"

@implementation NotificationDelegate

// The module proposes how to show the notification; the app may choose otherwise.
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:
             (void (^)(UNNotificationPresentationOptions options))completionHandler {
  const UNNotificationPresentationOptions proposed =
      [ZIBMessaging.shared willPresentNotification:notification];
  printf("app    | shows a notification\n");
  completionHandler(proposed);
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler {
  [ZIBMessaging.shared didReceiveNotificationResponse:response];
  printf("app    | a notification was tapped\n");
  completionHandler();
}

@end
