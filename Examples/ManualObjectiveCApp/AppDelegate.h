// The app's delegate. It forwards what the messaging module has to know, and then goes on with the
// app's own business.

#import <UIKit/UIKit.h>

@class NotificationDelegate;

@interface AppDelegate : NSObject <UIApplicationDelegate> {
  NotificationDelegate *_notificationDelegate;
}
@end
