// The messaging module for hosts and cores in Objective-C and Swift. In Swift all names begin with
// Zib, as the module's own do.
//
// Any thread, where nothing else is said.

#import <Foundation/Foundation.h>
// Whole: where a class is only declared with @class, Swift hides every method that takes one from
// files that do not import its framework too.
#import <UIKit/UIKit.h>
#import <UserNotifications/UserNotifications.h>

#if !defined(NS_SWIFT_NAME)
#define NS_SWIFT_NAME(name)
#endif
#if !defined(NS_ERROR_ENUM)
#define NS_ERROR_ENUM(domain, name) \
  enum name : NSInteger name;       \
  enum name : NSInteger
#define ZIB_ERROR_DOMAIN NSString *
#else
#define ZIB_ERROR_DOMAIN NSErrorDomain
#endif
#if defined(__has_attribute)
#if __has_attribute(swift_attr)
#define ZIB_MAIN_ACTOR __attribute__((swift_attr("@MainActor")))
#define ZIB_SENDABLE __attribute__((swift_attr("@Sendable")))
#endif
#endif
#if !defined(ZIB_MAIN_ACTOR)
#define ZIB_MAIN_ACTOR
#define ZIB_SENDABLE
#endif
// GCC's object runtime has no references that become nil by themselves.
#if defined(GNUSTEP_BASE_VERSION)
#define ZIB_WEAK assign
#else
#define ZIB_WEAK weak
#endif

NS_ASSUME_NONNULL_BEGIN

@class ZIBMessaging;

// The failures that the remote push configuration finds itself; what the platform reports is handed
// on as it came.
FOUNDATION_EXPORT ZIB_ERROR_DOMAIN const ZIBPushErrorDomain;
typedef NS_ERROR_ENUM(ZIBPushErrorDomain, ZIBPushError){
    ZIBPushErrorInvalidURL = 0, ZIBPushErrorNoData = 1, ZIBPushErrorInvalidPlist = 2,
    ZIBPushErrorFirebaseNotConfigured = 3,  // for hosts; the module never fails with it
} NS_SWIFT_NAME(ZibPushError);

// The core library's configuration, as far as the module reads it.
NS_SWIFT_NAME(ZibConfig)
ZIB_SENDABLE
__attribute__((objc_subclassing_restricted))
@interface ZIBConfig : NSObject {
 @private
  BOOL _autoSwizzlingEnabled;
}
// Whether the module integrates itself into the host's delegates.
@property(nonatomic, readonly, getter=isAutoSwizzlingEnabled) BOOL autoSwizzlingEnabled;
- (instancetype)initWithAutoSwizzlingEnabled:(BOOL)enabled;
- (instancetype)init __attribute__((unavailable("use initWithAutoSwizzlingEnabled:")));
+ (instancetype)new __attribute__((unavailable("use initWithAutoSwizzlingEnabled:")));
@end

// What the core library implements. It is called on any thread.
NS_SWIFT_NAME(ZibCore)
ZIB_SENDABLE
@protocol ZIBCore <NSObject>
// Nil while the core has no configuration.
@property(nonatomic, readonly, nullable) ZIBConfig *config;
// The URL of the remote push configuration; nil while the core is not initialised.
@property(nonatomic, readonly, copy, nullable) NSString *pushConfigEndpoint;
// One complete line.
- (void)log:(NSString *)message NS_SWIFT_NAME(log(_:));
// A failure, with the error where there is one.
- (void)logFailure:(NSString *)message
             error:(nullable NSError *)error NS_SWIFT_NAME(error(_:error:));
// One analytics event under a schema URI. Once for each event.
- (void)trackSelfDescribingEventWithSchema:(NSString *)schema
                                      data:(NSDictionary<NSString *, id> *)data
    NS_SWIFT_NAME(trackSelfDescribingEvent(schema:data:));
// The FCM registration token, whole. Always after saveFCMToken for the same token.
- (void)registerPushToken:(NSString *)token NS_SWIFT_NAME(registerPushToken(_:));
// The user's answer to the request for permission.
- (void)savePushPermission:(BOOL)granted NS_SWIFT_NAME(savePushPermission(_:));
- (void)saveFCMToken:(NSString *)token NS_SWIFT_NAME(saveFCMToken(_:));
@end

// What a host can learn. Each is called on the thread of the operation that has the news, after the
// module's own logging and tracking.
NS_SWIFT_NAME(ZibMessagingDelegate)
ZIB_SENDABLE
@protocol ZIBMessagingDelegate <NSObject>
@optional
// Named even where Swift would find the name: it drops words that repeat a type.

// An FCM token was accepted; it is whole.
- (void)zibMessaging:(ZIBMessaging *)messaging
     didReceiveToken:(NSString *)token NS_SWIFT_NAME(zibMessaging(_:didReceiveToken:));
// A notification is about to be presented in the foreground.
- (void)zibMessaging:(ZIBMessaging *)messaging
    didReceiveNotification:(NSDictionary *)userInfo
    NS_SWIFT_NAME(zibMessaging(_:didReceiveNotification:));
// The user acted on a notification.
- (void)zibMessaging:(ZIBMessaging *)messaging
    didReceiveNotificationResponse:(UNNotificationResponse *)response
    NS_SWIFT_NAME(zibMessaging(_:didReceiveNotificationResponse:));
// Registration failed, or the request for permission ended with an error.
- (void)zibMessaging:(ZIBMessaging *)messaging
    didFailToRegisterWithError:(NSError *)error
    NS_SWIFT_NAME(zibMessaging(_:didFailToRegisterWithError:));
@end

// How the module finds the delegates of a host that it integrates itself into.
typedef NS_ENUM(NSInteger, ZIBDelegateDiscovery) {
  // When the module is configured, and once more for what was not there: half a second later for
  // the delegate of notifications, a second later for scenes, where none was connected, and for the
  // delegate of a Firebase that had started. Not again for the application's delegate, further
  // scenes and Firebase.
  ZIBDelegateDiscoveryOnceWithRetry = 0,
  // As they come, at any time.
  ZIBDelegateDiscoveryContinuous = 1,
} NS_SWIFT_NAME(ZibDelegateDiscovery);

// What the module did with a method of a delegate.
typedef NS_ENUM(NSInteger, ZIBIntegrationState) {
  ZIBIntegrationStateNone = 0,        // nothing: it has the callback only as the delegate itself
  ZIBIntegrationStateSwapped = 1,     // the delegate's method was replaced
  ZIBIntegrationStateAdded = 2,       // the delegate had no such method
  ZIBIntegrationStateForwarding = 3,  // it had none, but answers by forwarding to another object
} NS_SWIFT_NAME(ZibIntegrationState);

// One function that a callback runs through, as far as it can be told.
NS_SWIFT_NAME(ZibIntegrationFunction)
ZIB_SENDABLE
__attribute__((objc_subclassing_restricted))
@interface ZIBIntegrationFunction : NSObject {
 @private
  NSString *_image;
  NSString *_symbol;
}
// The file name of the program or library that it lies in.
@property(nonatomic, readonly, copy, nullable) NSString *image;
@property(nonatomic, readonly, copy, nullable) NSString *symbol;
- (instancetype)init __attribute__((unavailable("part of a report")));
+ (instancetype)new __attribute__((unavailable("part of a report")));
@end

// One of the methods that the module intercepts, on the delegate that the system has.
NS_SWIFT_NAME(ZibIntegrationRow)
ZIB_SENDABLE
__attribute__((objc_subclassing_restricted))
@interface ZIBIntegrationRow : NSObject {
 @private
  NSString *_method;
  NSString *_delegateClass;
  NSArray<ZIBIntegrationFunction *> *_chain;
  NSArray<NSString *> *_remarks;
  ZIBIntegrationState _state;
}
// Its selector.
@property(nonatomic, readonly, copy) NSString *method;
// Nil where there is no delegate.
@property(nonatomic, readonly, copy, nullable) NSString *delegateClass;
@property(nonatomic, readonly) ZIBIntegrationState state;
// The outermost, which the system calls, first.
@property(nonatomic, readonly, copy) NSArray<ZIBIntegrationFunction *> *chain;
// What a host may want to know, in plain words.
@property(nonatomic, readonly, copy) NSArray<NSString *> *remarks;
- (instancetype)init __attribute__((unavailable("part of a report")));
+ (instancetype)new __attribute__((unavailable("part of a report")));
@end

// Who stands between the system and the host's delegates, as it was when the report was made.
NS_SWIFT_NAME(ZibIntegrationReport)
ZIB_SENDABLE
__attribute__((objc_subclassing_restricted))
@interface ZIBIntegrationReport : NSObject {
 @private
  NSArray<ZIBIntegrationRow *> *_rows;
  NSString *_text;
}
@property(nonatomic, readonly, copy) NSArray<ZIBIntegrationRow *> *rows;
// All of it, for a support ticket. No token, link or payload is in it.
@property(nonatomic, readonly, copy) NSString *text;
- (instancetype)init __attribute__((unavailable("use ZIBMessaging.integrationReport")));
+ (instancetype)new __attribute__((unavailable("use ZIBMessaging.integrationReport")));
@end

// The entry object.
NS_SWIFT_NAME(ZibMessaging)
ZIB_SENDABLE
__attribute__((objc_subclassing_restricted))
@interface ZIBMessaging : NSObject
@property(class, nonatomic, readonly) ZIBMessaging *shared NS_SWIFT_NAME(shared);
- (instancetype)init __attribute__((unavailable("use ZIBMessaging.shared")));
+ (instancetype)new __attribute__((unavailable("use ZIBMessaging.shared")));

// For the core library, once, when it starts. NO, and an error line, for nil
// and when a core is installed already.
+ (BOOL)installCore:(id<ZIBCore>)core NS_SWIFT_NAME(install(core:));

@property(ZIB_WEAK, nullable) id<ZIBMessagingDelegate> delegate;
// The user's latest answer that came without an error.
@property(nonatomic, readonly, getter=isPushEnabled) BOOL pushEnabled;
// The latest FCM token that was accepted, and the latest device token.
@property(nonatomic, readonly, copy, nullable) NSString *fcmToken;
@property(nonatomic, readonly, copy, nullable) NSData *apnsToken;
// The schema URI of every notification event.
@property(nonatomic, readonly, copy) NSString *notificationEventSchemaURI;
// The vendor in that schema, in place of the one that the module was built with. Once, before
// configure; NO, and an error line, otherwise and for what is no vendor.
- (BOOL)setEventVendor:(NSString *)vendor NS_SWIFT_NAME(setEventVendor(_:));
// Set before configure, which uses it; later it is refused with an error line.
@property(nonatomic) ZIBDelegateDiscovery delegateDiscovery;
// How things are now.
- (ZIBIntegrationReport *)integrationReport NS_SWIFT_NAME(integrationReport()) ZIB_MAIN_ACTOR;

// Integrates the module into the host, or leaves that to the host, as the core's configuration
// says. Once, at start-up: a second call only logs. The application may be nil where there is none
// yet.
- (void)configureWithApplication:(nullable UIApplication *)application
    NS_SWIFT_NAME(configure(application:)) ZIB_MAIN_ACTOR;
// Asks the user for permission, and the system for a device token once it is granted. Both answers
// arrive later, on the main thread.
- (void)registerForPushWithApplication:(UIApplication *)application
    NS_SWIFT_NAME(registerForPush(application:));

// What the application delegate was told; a host that integrates by hand forwards it.
// setPushToken is the same as the first.
- (void)didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken
    NS_SWIFT_NAME(didRegisterForRemoteNotifications(deviceToken:));
- (void)didFailToRegisterForRemoteNotificationsWithError:(NSError *)error
    NS_SWIFT_NAME(didFailToRegisterForRemoteNotifications(error:));
- (void)setPushToken:(NSData *)deviceToken NS_SWIFT_NAME(setPushToken(_:));

// An FCM registration token. Dropped, with a warning, before the first device token.
// didReceiveRegistrationToken is the same.
- (void)setFCMToken:(NSString *)token NS_SWIFT_NAME(setFCMToken(_:));
- (void)didReceiveRegistrationToken:(NSString *)token
    NS_SWIFT_NAME(didReceiveRegistrationToken(_:));

// Becomes Firebase Messaging's delegate if Firebase is there and has none. One attempt.
- (void)ensureFirebaseMessagingDelegate NS_SWIFT_NAME(ensureFirebaseMessagingDelegate());
// Becomes the notification centre's delegate if it has none.
- (void)setupAsNotificationDelegate NS_SWIFT_NAME(setupAsNotificationDelegate());

// A notification is about to be presented in the foreground: gives the options to present it with.
- (UNNotificationPresentationOptions)willPresentNotification:(UNNotification *)notification
    NS_SWIFT_NAME(willPresent(_:));
// The user acted on a notification.
- (void)didReceiveNotificationResponse:(UNNotificationResponse *)response
    NS_SWIFT_NAME(didReceive(_:));
// Report a notification without a log line, a call of the delegate or a link.
- (void)trackNotificationReceivedWithUserInfo:(NSDictionary *)userInfo
    NS_SWIFT_NAME(trackNotificationReceived(userInfo:));
- (void)trackNotificationOpenedWithUserInfo:(NSDictionary *)userInfo
    NS_SWIFT_NAME(trackNotificationOpened(userInfo:));
@end

// Finds the link in a notification and opens it.
NS_SWIFT_NAME(ZibDeepLinkHandler)
ZIB_SENDABLE
__attribute__((objc_subclassing_restricted))
@interface ZIBDeepLinkHandler : NSObject
@property(class, nonatomic, readonly) ZIBDeepLinkHandler *shared NS_SWIFT_NAME(shared);
- (instancetype)init __attribute__((unavailable("use ZIBDeepLinkHandler.shared")));
+ (instancetype)new __attribute__((unavailable("use ZIBDeepLinkHandler.shared")));

// The host's first chance at each link, on the thread that handles the notification. YES means that
// the host has handled it, and it must not be opened.
@property(copy, nullable) BOOL (^ZIB_SENDABLE urlDelegate)(NSURL *url);
// Opens the link of a tapped notification. YES when a link was handled by the host or handed on for
// opening.
- (BOOL)handleNotificationURLFromUserInfo:(NSDictionary *)userInfo
    NS_SWIFT_NAME(handleNotificationURL(from:));
// Records a link that reached the app by another route.
- (BOOL)handleURL:(NSURL *)url source:(NSString *)source NS_SWIFT_NAME(handleURL(_:source:));
@end

// Makes push depend on a remote switch.
NS_SWIFT_NAME(ZibPushConfig)
ZIB_SENDABLE
__attribute__((objc_subclassing_restricted))
@interface ZIBPushConfig : NSObject
@property(class, nonatomic, readonly) ZIBPushConfig *shared NS_SWIFT_NAME(shared);
- (instancetype)init __attribute__((unavailable("use ZIBPushConfig.shared")));
+ (instancetype)new __attribute__((unavailable("use ZIBPushConfig.shared")));

// Fetches the remote push configuration, from the core's endpoint if none is given. If it says that
// push is on, hands the app's Firebase property list to the handler, on a thread of the URL
// session's, and registers for push. The completion gets whether registration was started: with YES
// on the main thread, with NO on the URL session's, or before the return if nothing could be
// fetched.
- (void)configurePushWithApplication:(UIApplication *)application
                      configEndpoint:(nullable NSString *)configEndpoint
               firebaseConfigHandler:
                   (void (^ZIB_SENDABLE)(NSDictionary<NSString *, id> *config))firebaseConfigHandler
                          completion:(void (^_Nullable ZIB_SENDABLE)(BOOL started))completion
    NS_SWIFT_NAME(configurePush(application:configEndpoint:firebaseConfigHandler:completion:));
// Registers for push at once, without a remote configuration.
- (void)registerForPushSimpleWithApplication:(UIApplication *)application
    NS_SWIFT_NAME(registerForPushSimple(application:));
// Where the latest downloaded property list is stored; nil while there is no such file.
@property(nonatomic, readonly, copy, nullable) NSString *savedFirebasePlistPath;
@end

// The shapes of analytics events.
NS_SWIFT_NAME(ZibPayloadBuilder)
__attribute__((objc_subclassing_restricted))
@interface ZIBPayloadBuilder : NSObject
- (instancetype)init __attribute__((unavailable("its methods are of the class")));
+ (instancetype)new __attribute__((unavailable("its methods are of the class")));

// The event of a notification: always the same fourteen keys.
+ (NSDictionary<NSString *, id> *)createNotificationPayloadFromUserInfo:(NSDictionary *)userInfo
                                                              eventType:(NSString *)eventType
    NS_SWIFT_NAME(createNotificationPayload(from:eventType:));
// A named event of the host's own, stamped with the current time.
+ (NSDictionary<NSString *, id> *)
    createEventPayloadWithEventName:(NSString *)eventName
                         properties:(nullable NSDictionary<NSString *, id> *)properties
    NS_SWIFT_NAME(createEventPayload(eventName:properties:));
@end

NS_ASSUME_NONNULL_END
