// The app's delegate, in Objective-C++. It forwards what the messaging module has to know, each
// callback once, since one that is forwarded twice is counted twice, and then goes on with the
// app's own business.

#import <UIKit/UIKit.h>

@class NotificationDelegate;

@interface AppDelegate : NSObject <UIApplicationDelegate> {
  NotificationDelegate *_notificationDelegate;
}
@end
