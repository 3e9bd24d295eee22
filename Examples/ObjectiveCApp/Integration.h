// The whole integration: the app's callbacks reach the module from here on, and the app's delegates
// stay as they are. A C function, since the rest of this app is no C++; an app delegate in
// Objective-C++ would hold its lines itself.

#import <UIKit/UIKit.h>

#ifdef __cplusplus
extern "C" {
#endif

void startMessaging(UIApplication* application);

#ifdef __cplusplus
}
#endif
