#import "AppDelegate.h"

#include <stdio.h>

#import "ConsoleCore/ConsoleCore.h"
#import "NotificationDelegate.h"

@implementation AppDelegate

- (BOOL)application:(UIApplication *)application
    didFinishLaunchingWithOptions:(NSDictionary *)launchOptions {
  // The notification centre does not keep its delegate alive.
  _notificationDelegate = [[NotificationDelegate alloc] init];
  [UNUserNotificationCenter currentNotificationCenter].delegate = _notificationDelegate;

  // The core library comes first. Yours starts itself in its own way; what counts is that its
  // configuration says that this app integrates by hand.
  [ZIBMessaging installCore:[[ConsoleCore alloc] initWithAutoSwizzlingEnabled:NO]];

  // The module holds it weakly.
  ZIBMessaging.shared.delegate = self;
  [ZIBMessaging.shared configureWithApplication:application];

  // Asks the user for permission, now or whenever your app would rather ask.
  [ZIBMessaging.shared registerForPushWithApplication:application];
  return YES;
}

- (void)application:(UIApplication *)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken {
  [ZIBMessaging.shared didRegisterForRemoteNotificationsWithDeviceToken:deviceToken];
  printf("app    | device token of %lu bytes\n", (unsigned long)deviceToken.length);
}

- (void)application:(UIApplication *)application
    didFailToRegisterForRemoteNotificationsWithError:(NSError *)error {
  [ZIBMessaging.shared didFailToRegisterForRemoteNotificationsWithError:error];
  printf("app    | no device token: error %ld\n", (long)error.code);
}

- (BOOL)application:(UIApplication *)application
            openURL:(NSURL *)url
            options:(NSDictionary<UIApplicationOpenURLOptionsKey, id> *)options {
  [ZIBDeepLinkHandler.shared handleURL:url source:@"app_delegate"];
  printf("app    | opens %s\n", url.absoluteString.UTF8String);
  return YES;
}

// What the app wants to know of all that the module has to tell.
- (void)zibMessaging:(ZIBMessaging *)messaging didReceiveNotification:(NSDictionary *)userInfo {
  NSString *campaign = [userInfo objectForKey:@"pn_campaign_id"];
  printf("app    | news of campaign %s\n", campaign.UTF8String);
}

@end
