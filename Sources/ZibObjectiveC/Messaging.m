// A toolchain for Swift on Linux builds the package without Foundation.
#if __has_include(<UIKit/UIKit.h>)

#include "Private/Core.h"
#include "Private/IntegrationReport.h"
#include "Private/Ownership.h"

NSString *const ZIBPushErrorDomain = @ZIB_PUSH_ERROR_DOMAIN;

// There is one object of the class, and GCC's runtime has no instance variables outside of an
// @interface.
static ZIBMessaging *sharedMessaging;
#if __has_feature(objc_arc)
static __weak id<ZIBMessagingDelegate> heldDelegate;
#else
static id<ZIBMessagingDelegate> heldDelegate;
#endif
// How many of the tables that hand the news to it the module has not let go yet. None when a host
// has set another delegate by zib.h.
static int tablesInForce;

// The delegate, if it is there and wants to know. With ARC the variable that takes it keeps it for
// the call.
static id<ZIBMessagingDelegate> delegateFor(SEL news) {
  id<ZIBMessagingDelegate> const delegate = sharedMessaging.delegate;
  return [delegate respondsToSelector:news] ? delegate : nil;
}

static void didReceiveToken(void *context, zib_text token) {
  @autoreleasepool {
    [delegateFor(@selector(zibMessaging:didReceiveToken:)) zibMessaging:sharedMessaging
                                                        didReceiveToken:ZIBString(token)];
  }
}

static void didReceiveNotification(void *context, id userInfo) {
  @autoreleasepool {
    [delegateFor(@selector(zibMessaging:didReceiveNotification:)) zibMessaging:sharedMessaging
                                                        didReceiveNotification:userInfo];
  }
}

static void didReceiveResponse(void *context, id response, zib_text action, id userInfo) {
  @autoreleasepool {
    [delegateFor(@selector(zibMessaging:
         didReceiveNotificationResponse:)) zibMessaging:sharedMessaging
                         didReceiveNotificationResponse:response];
  }
}

static void didFailToRegister(void *context, const zib_error *error) {
  @autoreleasepool {
    [delegateFor(@selector(zibMessaging:didFailToRegisterWithError:)) zibMessaging:sharedMessaging
                                                        didFailToRegisterWithError:error->object];
  }
}

static void tableIsGone(void *context) {
  @synchronized(sharedMessaging) {
    --tablesInForce;
  }
}

static const zib_messaging_delegate table = {
    .size = sizeof table,
    .release = tableIsGone,
    .did_receive_token = didReceiveToken,
    .did_receive_notification = didReceiveNotification,
    .did_receive_notification_response = didReceiveResponse,
    .did_fail_to_register = didFailToRegister,
};

@implementation ZIBMessaging

+ (void)initialize {
  if (self == [ZIBMessaging class]) sharedMessaging = [[ZIBMessaging alloc] initShared];
}

+ (ZIBMessaging *)shared {
  return sharedMessaging;
}

- (instancetype)initShared {
  return [super init];
}

+ (BOOL)installCore:(id<ZIBCore>)core {
  return ZIBInstallCore(core);
}

- (id<ZIBMessagingDelegate>)delegate {
  @synchronized(self) {
    return tablesInForce > 0 ? heldDelegate : nil;
  }
}

- (void)setDelegate:(id<ZIBMessagingDelegate>)delegate {
  bool isInForce;
  @synchronized(self) {
    heldDelegate = delegate;
    isInForce = tablesInForce > 0;
    if (delegate != nil) ++tablesInForce;
  }
  // Out of the lock: what the module lets go may be the host's.
  if (delegate != nil) {
    if (!zib_messaging_set_delegate(&table)) tableIsGone(NULL);
  } else if (isInForce) {
    zib_messaging_set_delegate(NULL);
  }
}

- (BOOL)isPushEnabled {
  return zib_messaging_is_push_enabled();
}

- (NSString *)fcmToken {
  return ZIBStringTaken(zib_messaging_copy_fcm_token());
}

- (NSData *)apnsToken {
  return ZIB_AUTORELEASED(zib_messaging_copy_apns_token());
}

- (NSString *)notificationEventSchemaURI {
  return ZIBStringTaken(zib_messaging_copy_notification_event_schema_uri());
}

- (BOOL)setEventVendor:(NSString *)vendor {
  const zib_text text = ZIBTextCopy(vendor);
  const bool isSet = zib_messaging_set_event_vendor(text);
  zib_text_free(text);
  return isSet;
}

- (ZIBDelegateDiscovery)delegateDiscovery {
  return zib_messaging_delegate_discovery();
}

- (void)setDelegateDiscovery:(ZIBDelegateDiscovery)discovery {
  zib_messaging_set_delegate_discovery((int32_t)discovery);
}

- (ZIBIntegrationReport *)integrationReport {
  return ZIBMakeIntegrationReport();
}

- (void)configureWithApplication:(UIApplication *)application {
  zib_messaging_configure(application);
}

- (void)registerForPushWithApplication:(UIApplication *)application {
  zib_messaging_register_for_push(application);
}

- (void)didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken {
  zib_messaging_did_register_for_remote_notifications(deviceToken);
}

- (void)didFailToRegisterForRemoteNotificationsWithError:(NSError *)error {
  zib_messaging_did_fail_to_register_for_remote_notifications(error);
}

- (void)setPushToken:(NSData *)deviceToken {
  zib_messaging_set_push_token(deviceToken);
}

- (void)setFCMToken:(NSString *)token {
  const zib_text text = ZIBTextCopy(token);
  zib_messaging_set_fcm_token(text);
  zib_text_free(text);
}

- (void)didReceiveRegistrationToken:(NSString *)token {
  const zib_text text = ZIBTextCopy(token);
  zib_messaging_did_receive_registration_token(text);
  zib_text_free(text);
}

- (void)ensureFirebaseMessagingDelegate {
  zib_messaging_ensure_firebase_messaging_delegate();
}

- (void)setupAsNotificationDelegate {
  zib_messaging_setup_as_notification_delegate();
}

- (UNNotificationPresentationOptions)willPresentNotification:(UNNotification *)notification {
  return zib_messaging_will_present(notification);
}

- (void)didReceiveNotificationResponse:(UNNotificationResponse *)response {
  zib_messaging_did_receive(response);
}

- (void)trackNotificationReceivedWithUserInfo:(NSDictionary *)userInfo {
  zib_messaging_track_notification_received(userInfo);
}

- (void)trackNotificationOpenedWithUserInfo:(NSDictionary *)userInfo {
  zib_messaging_track_notification_opened(userInfo);
}

@end

#endif
