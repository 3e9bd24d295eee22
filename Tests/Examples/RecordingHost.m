#include "RecordingHost.h"

#import <UIKit/UIKit.h>
#import <UserNotifications/UserNotifications.h>
#include <dispatch/dispatch.h>
#include <objc/blocks_runtime.h>
#include <objc/runtime.h>

typedef void (^OptionsCompletion)(UNNotificationPresentationOptions options);
typedef void (^Completion)(void);

static const UNNotificationPresentationOptions hostOptions =
    UNNotificationPresentationOptionBadge | UNNotificationPresentationOptionList;

static int changes = 0;
static NSException *thrown = nil;

static void record(id receiver, SEL selector, id subject, id argument) {
  hostMethodCalled(receiver, sel_getName(selector), subject, argument);
}

@interface RecordingDelegate : NSObject <UIApplicationDelegate, UNUserNotificationCenterDelegate> {
  int _badges;
}
@property(nonatomic) int badges;
@end

@implementation RecordingDelegate

@synthesize badges = _badges;

- (void)application:(UIApplication *)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken {
  record(self, _cmd, application, deviceToken);
}

- (void)application:(UIApplication *)application
    didFailToRegisterForRemoteNotificationsWithError:(NSError *)error {
  record(self, _cmd, application, error);
}

- (BOOL)application:(UIApplication *)application
            openURL:(NSURL *)url
            options:(NSDictionary<UIApplicationOpenURLOptionsKey, id> *)options {
  record(self, _cmd, application, url);
  return options.count != 0;
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:(OptionsCompletion)completionHandler {
  record(self, _cmd, (id)center, notification);
  completionHandler(hostOptions);
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(Completion)completionHandler {
  record(self, _cmd, (id)center, response);
  completionHandler();
}

- (void)observeValueForKeyPath:(NSString *)keyPath
                      ofObject:(id)object
                        change:(NSDictionary *)change
                       context:(void *)context {
  ++changes;
}

@end

@interface InheritingDelegate : RecordingDelegate
@end

@implementation InheritingDelegate
@end

@interface SuperDelegate : RecordingDelegate
@end

@implementation SuperDelegate

- (void)application:(UIApplication *)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken {
  record(self, _cmd, application, deviceToken);
  [super application:application didRegisterForRemoteNotificationsWithDeviceToken:deviceToken];
}

- (BOOL)application:(UIApplication *)application
            openURL:(NSURL *)url
            options:(NSDictionary<UIApplicationOpenURLOptionsKey, id> *)options {
  record(self, _cmd, application, url);
  return ![super application:application openURL:url options:options];
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:(OptionsCompletion)completionHandler {
  record(self, _cmd, (id)center, notification);
  [super userNotificationCenter:center
        willPresentNotification:notification
          withCompletionHandler:^(UNNotificationPresentationOptions options) {
            completionHandler(options | UNNotificationPresentationOptionSound);
          }];
}

@end

@interface LaterDelegate : RecordingDelegate
@end

@implementation LaterDelegate

// One completion is copied by hand, the other by the block that uses it.
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:(OptionsCompletion)completionHandler {
  record(self, _cmd, (id)center, notification);
  __block OptionsCompletion kept = (OptionsCompletion)_Block_copy((const void *)completionHandler);
  dispatch_async(dispatch_get_main_queue(), ^{
    kept(hostOptions);
    _Block_release((const void *)kept);
  });
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(Completion)completionHandler {
  record(self, _cmd, (id)center, response);
  dispatch_async(dispatch_get_main_queue(), ^{
    dispatch_async(dispatch_get_main_queue(), ^{
      completionHandler();
    });
  });
}

@end

@interface ThrowingDelegate : RecordingDelegate
@end

@implementation ThrowingDelegate

static void throwAnException(void) {
  [thrown release];
  thrown = [[NSException alloc] initWithName:@"HostException"
                                      reason:@"the host's own"
                                    userInfo:nil];
  @throw thrown;
}

- (void)application:(UIApplication *)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken {
  record(self, _cmd, application, deviceToken);
  throwAnException();
}

- (void)application:(UIApplication *)application
    didFailToRegisterForRemoteNotificationsWithError:(NSError *)error {
  record(self, _cmd, application, error);
  throwAnException();
}

- (BOOL)application:(UIApplication *)application
            openURL:(NSURL *)url
            options:(NSDictionary<UIApplicationOpenURLOptionsKey, id> *)options {
  record(self, _cmd, application, url);
  throwAnException();
  return NO;
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:(OptionsCompletion)completionHandler {
  record(self, _cmd, (id)center, notification);
  throwAnException();
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(Completion)completionHandler {
  record(self, _cmd, (id)center, response);
  throwAnException();
}

@end

id makeHostDelegate(const char *className) { return [[objc_lookUpClass(className) alloc] init]; }

const char *classNameOf(id object) { return class_getName([object class]); }

const char *hiddenClassNameOf(id object) { return class_getName(object_getClass(object)); }

const void *implementationFor(id object, const char *selector) {
  return (const void *)class_getMethodImplementation(object_getClass(object),
                                                     sel_registerName(selector));
}

void setBadges(id delegate, int badges) { ((RecordingDelegate *)delegate).badges = badges; }

void beginObservation(id delegate) {
  [delegate addObserver:delegate forKeyPath:@"badges" options:0 context:NULL];
}

void endObservation(id delegate) { [delegate removeObserver:delegate forKeyPath:@"badges"]; }

int observedChanges(void) { return changes; }

id exceptionThrownBy(void (*work)(void *), void *context) {
  @try {
    work(context);
  } @catch (NSException *exception) {
    return exception;
  }
  return nil;
}

id thrownException(void) { return thrown; }
