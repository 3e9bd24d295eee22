#import "NotificationDelegate.h"

#include <dispatch/dispatch.h>
#include <stdio.h>

@implementation NotificationDelegate

// The options that the app chooses are the ones that the system gets: the module reports the
// notification and has no say in how it is shown.
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:
             (void (^)(UNNotificationPresentationOptions options))completionHandler {
  printf("app    | shows a notification\n");
  completionHandler(UNNotificationPresentationOptionList | UNNotificationPresentationOptionBanner);
}

// A completion may be kept and called later, as it may be without the module.
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler {
  printf("app    | a notification was tapped\n");
  dispatch_async(dispatch_get_main_queue(), ^{
    printf("app    | has shown what the notification is about\n");
    completionHandler();
  });
}

@end
