// What a scenario needs and a test cannot get from the system: notifications, and responses to
// them. They answer what the system's own answer; the module asks by name.

#import <UserNotifications/UserNotifications.h>

NS_ASSUME_NONNULL_BEGIN

UNNotification *PlayedNotification(NSDictionary *userInfo);
UNNotificationResponse *PlayedResponse(NSDictionary *userInfo, NSString *actionIdentifier);

NS_ASSUME_NONNULL_END
