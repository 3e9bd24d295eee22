// The app's delegate. It is written as if there were no messaging module, and stays as it is when
// one comes.

#import <UIKit/UIKit.h>

@class NotificationDelegate;

@interface AppDelegate : NSObject <UIApplicationDelegate> {
  NotificationDelegate *_notificationDelegate;
}
@end
