// The methods that the module registers at run time, declared as an Objective-C host would declare
// them. Compiled only for the type strings that the platform's compiler gives them, which
// AbiAssertions.cpp holds against ours. One method here for each one that a ClassBuilder gets.

#include <objc/NSObject.h>

@class NSData, NSDictionary, NSError, NSNotification, NSSet, NSString, NSURL;
@class UIApplication, UIScene;
@class UNNotification, UNNotificationResponse, UNUserNotificationCenter;
@class FIRMessaging;

typedef NSUInteger UNNotificationPresentationOptions;

@interface ZibMessaging : NSObject
@end

@implementation ZibMessaging

- (instancetype)init {
  return self;
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))completionHandler {
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler {
}

- (void)messaging:(FIRMessaging *)messaging didReceiveRegistrationToken:(NSString *)token {
}

@end

@interface ZibDelegateWatch : NSObject
@end

@implementation ZibDelegateWatch

- (void)lookAround:(NSNotification *)notification {
}

- (void)lookAtFirebase:(NSNotification *)notification {
}

@end

@interface ZibSwizzleManager : NSObject
@end

@implementation ZibSwizzleManager

- (void)zib_didRegister:(UIApplication *)application deviceToken:(NSData *)token {
}

- (void)zib_didFailRegister:(UIApplication *)application error:(NSError *)error {
}

- (BOOL)zib_openURL:(UIApplication *)application url:(NSURL *)url options:(NSDictionary *)options {
  return 1;
}

- (void)zib_scene:(UIScene *)scene openURLContexts:(NSSet *)contexts {
}

- (void)zib_willPresent:(UNUserNotificationCenter *)center
           notification:(UNNotification *)notification
      completionHandler:(void (^)(UNNotificationPresentationOptions))completionHandler {
}

- (void)zib_didReceive:(UNUserNotificationCenter *)center
              response:(UNNotificationResponse *)response
     completionHandler:(void (^)(void))completionHandler {
}

- (void)zib_messaging:(FIRMessaging *)messaging didReceiveRegistrationToken:(NSString *)token {
}

@end

// A block with something to copy and to dispose of, for the layout and the flags.
void (^retainedBlock(id captured))(NSUInteger) {
  return ^(NSUInteger options) {
    [captured self];
  };
}

// Ownership, for the functions that compilers call.
id retained(id object) { return object; }
void usePool(void) {
  @autoreleasepool {
    [retained(nil) self];
  }
}
