// The part of UserNotifications' declarations that the Objective-C face and hosts in Swift use.

#pragma once

#if __has_feature(modules)
@import Foundation;
#else
#import <Foundation/Foundation.h>
#endif

NS_ASSUME_NONNULL_BEGIN

typedef NS_OPTIONS(NSUInteger, UNNotificationPresentationOptions) {
  UNNotificationPresentationOptionBadge = 1 << 0,
  UNNotificationPresentationOptionSound = 1 << 1,
  UNNotificationPresentationOptionList = 1 << 3,
  UNNotificationPresentationOptionBanner = 1 << 4,
};

@interface UNNotificationContent : NSObject
@property(readonly, copy) NSDictionary *userInfo;
@end

@interface UNNotificationRequest : NSObject
@property(readonly, copy) UNNotificationContent *content;
@end

@interface UNNotification : NSObject
@property(readonly, copy) UNNotificationRequest *request;
@end

@interface UNNotificationResponse : NSObject
@property(readonly, copy) UNNotification *notification;
@property(readonly, copy) NSString *actionIdentifier;
@end

@class UNUserNotificationCenter;

@protocol UNUserNotificationCenterDelegate <NSObject>
@optional
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:
             (void (^)(UNNotificationPresentationOptions options))completionHandler;
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler;
@end

@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter *)currentNotificationCenter NS_SWIFT_NAME(current());
@property(nullable, assign) id<UNUserNotificationCenterDelegate> delegate;
@end

NS_ASSUME_NONNULL_END
