// What the app's Objective-C side sees of the messaging module: one function.

#import <UIKit/UIKit.h>

void startMessaging(UIApplication* application);
