// The messaging module's public operations, as far as this app forwards to them, for Objective-C.
// Each callback goes to exactly one of them, once: one that is forwarded twice is counted twice.

#import <UIKit/UIKit.h>
#import <UserNotifications/UserNotifications.h>

void startMessaging(UIApplication *application);
void messagingDidRegister(NSData *deviceToken);
void messagingDidFailToRegister(NSError *error);
void messagingDidOpenURL(NSURL *url);
UNNotificationPresentationOptions messagingWillPresent(UNNotification *notification);
void messagingDidReceive(UNNotificationResponse *response);
