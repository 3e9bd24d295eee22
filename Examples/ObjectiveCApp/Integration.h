// The whole integration: the app's callbacks reach the module from here on, and the app's delegates
// stay as they are. An app of your own has these lines at the end of
// application:didFinishLaunchingWithOptions:.

#import <UIKit/UIKit.h>

void startMessaging(UIApplication* application);
