// The part of UIKit's declarations that the Objective-C face and hosts in Swift use.

#pragma once

#if __has_feature(modules)
@import Foundation;
#else
#import <Foundation/Foundation.h>
#endif

NS_ASSUME_NONNULL_BEGIN

@class UIApplication;

typedef NSString *UIApplicationLaunchOptionsKey __attribute__((swift_wrapper(struct)))
NS_SWIFT_NAME(UIApplication.LaunchOptionsKey);
typedef NSString *UIApplicationOpenURLOptionsKey __attribute__((swift_wrapper(struct)))
NS_SWIFT_NAME(UIApplication.OpenURLOptionsKey);

__attribute__((swift_attr("@MainActor")))
@protocol UIApplicationDelegate<NSObject>
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
            options:(NSDictionary<UIApplicationOpenURLOptionsKey, id> *)options
    NS_SWIFT_NAME(application(_:open:options:));
@end

__attribute__((swift_attr("@MainActor")))
@interface UIResponder : NSObject
@end

__attribute__((swift_attr("@MainActor")))
@interface UIApplication : UIResponder
@property(class, readonly) UIApplication *sharedApplication NS_SWIFT_NAME(shared);
@property(nullable, assign) id<UIApplicationDelegate> delegate;
@end

NS_ASSUME_NONNULL_END
