// The app's delegate. It forwards what the messaging module has to know, each callback once, since
// one that is forwarded twice is counted twice, and then goes on with the app's own business.

#import <UIKit/UIKit.h>

#import "ZibObjectiveC.h"

@class NotificationDelegate;

@interface AppDelegate : NSObject <UIApplicationDelegate, ZIBMessagingDelegate> {
  NotificationDelegate *_notificationDelegate;
}
@end
