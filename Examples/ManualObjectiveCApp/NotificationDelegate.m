#import "NotificationDelegate.h"

#include <stdio.h>

#import "Messaging.h"

@implementation NotificationDelegate

// The module proposes how to show the notification; the app may choose otherwise.
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:
             (void (^)(UNNotificationPresentationOptions options))completionHandler {
  UNNotificationPresentationOptions proposed = messagingWillPresent(notification);
  printf("app    | shows a notification\n");
  completionHandler(proposed);
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler {
  messagingDidReceive(response);
  printf("app    | a notification was tapped\n");
  completionHandler();
}

@end
