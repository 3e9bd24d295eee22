#import <UIKit/UIKit.h>

#import "ZibObjectiveC.h"

@interface SnippetDelegate : NSObject <UIApplicationDelegate>
@end

@implementation SnippetDelegate

- (BOOL)application:(UIApplication *)application
    didFinishLaunchingWithOptions:(NSDictionary *)launchOptions {
  [ZIBMessaging.shared configureWithApplication:application];
  [ZIBMessaging.shared registerForPushWithApplication:application];
  return YES;
}

- (void)application:(UIApplication *)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken {
  [ZIBMessaging.shared didRegisterForRemoteNotificationsWithDeviceToken:deviceToken];
}

@end
