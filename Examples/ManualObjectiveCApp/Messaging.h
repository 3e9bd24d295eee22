// The messaging module's public operations, as far as this app forwards to them, for Objective-C.
// Each callback goes to exactly one of them, once: one that is forwarded twice is counted twice.

#import <UIKit/UIKit.h>
#import <UserNotifications/UserNotifications.h>

FOUNDATION_EXPORT void startMessaging(UIApplication *application);
FOUNDATION_EXPORT void messagingDidRegister(NSData *deviceToken);
FOUNDATION_EXPORT void messagingDidFailToRegister(NSError *error);
FOUNDATION_EXPORT void messagingDidOpenURL(NSURL *url);
FOUNDATION_EXPORT UNNotificationPresentationOptions
messagingWillPresent(UNNotification *notification);
FOUNDATION_EXPORT void messagingDidReceive(UNNotificationResponse *response);
