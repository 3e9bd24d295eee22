#import "AppDelegate.h"

#include <cstdint>
#include <cstdio>
#include <memory>

#import "NotificationDelegate.h"
#include "PrintingCore/PrintingCore.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibMessagingDelegate.h"
#include "ZibPlatform/ObjectiveC/Bridge.h"

namespace {

// What the app wants to know of all that the module has to tell; the rest does nothing.
class MessagingNews final : public ZibMessagingDelegate {
 public:
  void didReceiveNotification(ZibMessaging & /*messaging*/,
                              const zib::Dictionary &userInfo) override {
    NSDictionary *payload = zib::as<NSDictionary>(userInfo.native());
    NSString *campaign = [payload objectForKey:@"pn_campaign_id"];
    std::printf("app    | news of campaign %s\n", campaign.UTF8String);
  }
};

}  // namespace

@implementation AppDelegate

- (BOOL)application:(UIApplication *)application
    didFinishLaunchingWithOptions:(NSDictionary *)launchOptions {
  // The notification centre does not keep its delegate alive.
  _notificationDelegate = [[NotificationDelegate alloc] init];
  [UNUserNotificationCenter currentNotificationCenter].delegate = _notificationDelegate;

  // The core library comes first. Yours starts itself in its own way; what counts is that its
  // configuration says that this app integrates by hand.
  installPrintingCore({.autoSwizzlingEnabled = false});

  // The module holds it weakly.
  static const auto news = std::make_shared<MessagingNews>();
  ZibMessaging::shared().setDelegate(news);

  const auto zibApplication = zib::Application::retained(zib::native(application));
  ZibMessaging::shared().configure(zibApplication);

  // Asks the user for permission, now or whenever your app would rather ask.
  ZibMessaging::shared().registerForPush(zibApplication);
  return YES;
}

- (void)application:(UIApplication *)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken {
  const auto *bytes = static_cast<const std::uint8_t *>(deviceToken.bytes);
  ZibMessaging::shared().didRegisterForRemoteNotifications({bytes, deviceToken.length});
  std::printf("app    | device token of %lu bytes\n", (unsigned long)deviceToken.length);
}

- (void)application:(UIApplication *)application
    didFailToRegisterForRemoteNotificationsWithError:(NSError *)error {
  ZibMessaging::shared().didFailToRegisterForRemoteNotifications(
      zib::Error::fromNative(zib::native(error)));
  std::printf("app    | no device token: error %ld\n", (long)error.code);
}

- (BOOL)application:(UIApplication *)application
            openURL:(NSURL *)url
            options:(NSDictionary<UIApplicationOpenURLOptionsKey, id> *)options {
  if (const auto opened = zib::URL::retained(zib::native(url))) {
    ZibDeepLinkHandler::shared().handleURL(*opened, "app_delegate");
  }
  std::printf("app    | opens %s\n", url.absoluteString.UTF8String);
  return YES;
}

@end
