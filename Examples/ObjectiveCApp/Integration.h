// What the app's Objective-C side sees of the messaging module: one function.

#import <UIKit/UIKit.h>

FOUNDATION_EXPORT void startMessaging(UIApplication* application);
