// The part of UIKit's declarations that the examples use, so that their Objective-C files compile
// on Linux as they are. On a phone the SDK's own <UIKit/UIKit.h> takes this one's place.

#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class UIApplication;

typedef NSString *UIApplicationOpenURLOptionsKey;
typedef NSString *UIApplicationLaunchOptionsKey;

@protocol UIApplicationDelegate <NSObject>
@optional
- (BOOL)application:(UIApplication *)application
    didFinishLaunchingWithOptions:
        (nullable NSDictionary<UIApplicationLaunchOptionsKey, id> *)launchOptions;
- (void)application:(UIApplication *)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken;
- (void)application:(UIApplication *)application
    didFailToRegisterForRemoteNotificationsWithError:(NSError *)error;
- (BOOL)application:(UIApplication *)application
            openURL:(NSURL *)url
            options:(NSDictionary<UIApplicationOpenURLOptionsKey, id> *)options;
@end

@interface UIApplication : NSObject
+ (UIApplication *)sharedApplication;
@property(nonatomic, assign, nullable) id<UIApplicationDelegate> delegate;
@end

NS_ASSUME_NONNULL_END
