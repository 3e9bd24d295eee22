// The system's side of an example: starts the simulated device and calls the app back, as the
// system does on a phone. Callable from C++ and Objective-C.
//
// Not part of what an app needs: on a phone the system is there, and UIApplicationMain() calls it.

#pragma once

#ifdef __OBJC__
#import <Foundation/Foundation.h>
typedef id DeviceObject;
#else
typedef struct objc_object* DeviceObject;
#endif

#ifdef __cplusplus
extern "C" {
#endif

// Once, before anything else. What the app and the module ask of the system is printed from now on,
// and the user says yes when asked for permission.
void launchDevice(void);

// The application object: [UIApplication sharedApplication].
DeviceObject deviceApplication(void);

// Each of these calls the app's delegates, if they respond, and lets the main queue run afterwards.
// `userInfo` is an NSDictionary.
void deliverDeviceToken(void);
void deliverRegistrationFailure(void);
void presentNotification(DeviceObject userInfo);
void tapNotification(DeviceObject userInfo);
void openURL(const char* url);

// All of them, one after the other.
void liveThroughADay(void);

#ifdef __cplusplus
}
#endif
