#import "AppDelegate.h"

#include <stdio.h>

#import "Messaging.h"
#import "NotificationDelegate.h"

@implementation AppDelegate

- (BOOL)application:(UIApplication *)application
    didFinishLaunchingWithOptions:(NSDictionary *)launchOptions {
  // The notification centre does not keep its delegate alive.
  _notificationDelegate = [[NotificationDelegate alloc] init];
  [UNUserNotificationCenter currentNotificationCenter].delegate = _notificationDelegate;
  startMessaging(application);
  return YES;
}

- (void)application:(UIApplication *)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken {
  messagingDidRegister(deviceToken);
  printf("app    | device token of %lu bytes\n", (unsigned long)deviceToken.length);
}

- (void)application:(UIApplication *)application
    didFailToRegisterForRemoteNotificationsWithError:(NSError *)error {
  messagingDidFailToRegister(error);
  printf("app    | no device token: error %ld\n", (long)error.code);
}

- (BOOL)application:(UIApplication *)application
            openURL:(NSURL *)url
            options:(NSDictionary<UIApplicationOpenURLOptionsKey, id> *)options {
  messagingDidOpenURL(url);
  printf("app    | opens %s\n", url.absoluteString.UTF8String);
  return YES;
}

@end
