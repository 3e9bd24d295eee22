// A host and its core library in Objective-C++, which use all that the module offers to them. The
// check compiles it as hosts are compiled: with ARC and without, with the platform's headers before
// the module's and after them.

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibMessagingDelegate.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibMessaging/ZibPushError.h"
// What these do not bring in themselves, down to the runtime's own functions.
#include "ZibPlatform/Dispatch/MainQueue.h"
#include "ZibPlatform/ObjectiveC/Bridge.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Send.h"
#include "ZibPlatform/UIKit/Scenes.h"

#import <Block.h>
#import <UIKit/UIKit.h>
#import <UserNotifications/UserNotifications.h>
#import <dispatch/dispatch.h>
#import <objc/message.h>
#import <objc/runtime.h>

#include <memory>
#include <string>

// What a core library makes of the module's values.
@interface CoreLibrary : NSObject
- (void)sendEvent:(NSDictionary *)event schema:(NSString *)schema;
- (void)write:(NSString *)line error:(NSError *)error;
- (void)keepToken:(NSString *)token allowed:(BOOL)allowed;
@end

namespace {

NSString *textOf(std::string_view text) {
  return [NSString stringWithUTF8String:std::string(text).c_str()];
}

class Core final : public Zib {
 public:
  explicit Core(CoreLibrary *library) : library_(library) {}

  [[nodiscard]] std::optional<ZibConfig> config() const override {
    return ZibConfig{.autoSwizzlingEnabled = true};
  }
  void trackSelfDescribingEvent(std::string_view schema, const zib::ValueMap &data) override {
    [library_ sendEvent:zib::as<NSDictionary>(zib::Dictionary::from(data).native())
                 schema:textOf(schema)];
  }
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override {
    return std::nullopt;
  }
  void registerPushToken(std::string_view token) override {
    [library_ keepToken:textOf(token) allowed:YES];
  }

 private:
  CoreLibrary *library_;
};

class Logger final : public ZibLogger {
 public:
  explicit Logger(CoreLibrary *library) : library_(library) {}

  void log(std::string_view message) override { [library_ write:textOf(message) error:nil]; }
  void error(std::string_view message, const std::optional<zib::Error> &error) override {
    NSError *const native = error ? zib::as<NSError>(error->nativeError()) : nil;
    [library_ write:textOf(message) error:native];
  }

 private:
  CoreLibrary *library_;
};

class Storage final : public ZibStorage {
 public:
  explicit Storage(CoreLibrary *library) : library_(library) {}

  void savePushPermission(bool granted) override { [library_ keepToken:@"" allowed:granted]; }
  void saveFCMToken(std::string_view token) override {
    [library_ keepToken:textOf(token) allowed:YES];
  }

 private:
  CoreLibrary *library_;
};

class MessagingDelegate final : public ZibMessagingDelegate {
 public:
  explicit MessagingDelegate(CoreLibrary *library) : library_(library) {}

  void zibMessagingDidReceiveToken(ZibMessaging & /*messaging*/, std::string_view token) override {
    [library_ keepToken:textOf(token) allowed:YES];
  }
  void zibMessagingDidReceiveNotification(ZibMessaging & /*messaging*/,
                                          const zib::Dictionary &userInfo) override {
    NSDictionary *const payload = zib::as<NSDictionary>(userInfo.native());
    [library_ write:payload[@"pn_campaign_id"] error:nil];
  }
  void zibMessagingDidReceiveNotificationResponse(
      ZibMessaging & /*messaging*/, const zib::NotificationResponse &response) override {
    auto *const native = zib::as<UNNotificationResponse>(response.native());
    [library_ write:native.actionIdentifier error:nil];
  }
  void zibMessagingDidFailToRegisterWithError(ZibMessaging & /*messaging*/,
                                              const zib::Error &error) override {
    const bool isOurs = zib::pushErrorFrom(error) == ZibPushError::noData;
    [library_ write:textOf(isOurs ? ZibPushError(ZibPushError::noData).errorDescription()
                                  : error.description)
              error:zib::as<NSError>(error.nativeError())];
  }

 private:
  CoreLibrary *library_;
};

}  // namespace

@interface HostDelegate : NSObject <UIApplicationDelegate, UNUserNotificationCenterDelegate>
@end

@implementation HostDelegate {
  CoreLibrary *_library;
  // The module holds it weakly.
  std::shared_ptr<MessagingDelegate> _messagingDelegate;
}

- (BOOL)application:(UIApplication *)application
    didFinishLaunchingWithOptions:(NSDictionary *)launchOptions {
  _library = [[CoreLibrary alloc] init];
  CoreLibrary *const library = _library;
  Zib::install(std::make_unique<Core>(library));
  ZibLogger::install(std::make_unique<Logger>(library));
  ZibStorage::install(std::make_unique<Storage>(library));

  _messagingDelegate = std::make_shared<MessagingDelegate>(library);
  ZibMessaging::shared().setDelegate(_messagingDelegate);
  ZibDeepLinkHandler::shared().setURLDelegate([library](const zib::URL &url) {
    [library write:zib::as<NSURL>(url.native()).absoluteString error:nil];
    return true;
  });

  const auto zibApplication = zib::Application::retained(zib::native(application));
  ZibMessaging::shared().configure(zibApplication);
  ZibPushConfig::shared().configurePush(
      zibApplication, std::nullopt,
      [library](const zib::Dictionary &plist) {
        [library sendEvent:zib::as<NSDictionary>(plist.native()) schema:@"firebase"];
      },
      [library](bool started) { [library keepToken:@"" allowed:started]; });
  ZibMessaging::shared().registerForPush(zibApplication);
  ZibMessaging::shared().ensureFirebaseMessagingDelegate();
  return ZibPushConfig::shared().savedFirebasePlistPath().has_value();
}

- (void)application:(UIApplication *)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken {
  const auto *bytes = static_cast<const std::uint8_t *>(deviceToken.bytes);
  ZibMessaging::shared().didRegisterForRemoteNotifications({bytes, deviceToken.length});
  ZibMessaging::shared().setFCMToken(@"token".UTF8String);
}

- (void)application:(UIApplication *)application
    didFailToRegisterForRemoteNotificationsWithError:(NSError *)error {
  ZibMessaging::shared().didFailToRegisterForRemoteNotifications(
      zib::Error::fromNative(zib::native(error)));
}

- (BOOL)application:(UIApplication *)application
            openURL:(NSURL *)url
            options:(NSDictionary<UIApplicationOpenURLOptionsKey, id> *)options {
  const auto opened = zib::URL::retained(zib::native(url));
  return opened && ZibDeepLinkHandler::shared().handleURL(*opened, "host");
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:
             (void (^)(UNNotificationPresentationOptions options))completionHandler {
  NSDictionary *const payload = notification.request.content.userInfo;
  const auto userInfo = zib::Dictionary::retained(zib::native(payload));
  Zib::shared().trackSelfDescribingEvent(
      ZibPayloadBuilder::notificationEventSchemaURI(),
      ZibPayloadBuilder::createNotificationPayload(userInfo, "shown"));
  completionHandler(
      ZibMessaging::shared().willPresent(zib::Notification::retained(zib::native(notification))));
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler {
  ZibMessaging::shared().didReceive(zib::NotificationResponse::retained(zib::native(response)));
  dispatch_async(dispatch_get_main_queue(), ^{
    completionHandler();
  });
}

@end
