// The app's own say in how notifications are shown and what a tap does.

#import <UserNotifications/UserNotifications.h>

@interface NotificationDelegate : NSObject <UNUserNotificationCenterDelegate>
@end
