// The app's own say in how notifications are shown and what a tap does. Like AppDelegate it knows
// nothing of the messaging module.

#import <UserNotifications/UserNotifications.h>

@interface NotificationDelegate : NSObject <UNUserNotificationCenterDelegate>
@end
