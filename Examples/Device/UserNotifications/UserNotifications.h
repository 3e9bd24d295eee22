// The part of UserNotifications' declarations that the examples use. On a phone the SDK's own
// <UserNotifications/UserNotifications.h> takes this one's place.

#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class UNUserNotificationCenter;

typedef NS_OPTIONS(NSUInteger, UNNotificationPresentationOptions) {
  UNNotificationPresentationOptionBadge = 1 << 0,
  UNNotificationPresentationOptionSound = 1 << 1,
  UNNotificationPresentationOptionAlert = 1 << 2,
  UNNotificationPresentationOptionList = 1 << 3,
  UNNotificationPresentationOptionBanner = 1 << 4,
};

@interface UNNotificationContent : NSObject
@property(nonatomic, readonly) NSDictionary *userInfo;
@end

@interface UNNotificationRequest : NSObject
@property(nonatomic, readonly) UNNotificationContent *content;
@end

@interface UNNotification : NSObject
@property(nonatomic, readonly) UNNotificationRequest *request;
@end

@interface UNNotificationResponse : NSObject
@property(nonatomic, readonly) UNNotification *notification;
@property(nonatomic, readonly) NSString *actionIdentifier;
@end

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
+ (UNUserNotificationCenter *)currentNotificationCenter;
@property(nonatomic, assign, nullable) id<UNUserNotificationCenterDelegate> delegate;
@end

NS_ASSUME_NONNULL_END
