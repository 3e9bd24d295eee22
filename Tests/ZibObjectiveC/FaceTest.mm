// The Objective-C face on the simulated device: a core and a delegate in Objective-C, and what the
// host is given and lets go.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Simulator/Foundation/Foundation.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "Tests/Support/Device.h"
#include "Tests/Support/Image.h"
#include "Tests/Support/PushFlow.h"
#include "ZibC/zib.h"
#import "ZibObjectiveC.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Bridge.h"

// What a core or a delegate was called with, in order.
@interface Recorder : NSObject {
 @public
  std::vector<std::string> *_calls;
}
@end

@implementation Recorder

- (instancetype)init {
  self = [super init];
  if (self != nil) _calls = new std::vector<std::string>;
  return self;
}

- (void)dealloc {
  delete _calls;
  [super dealloc];
}

- (void)record:(NSString *)call {
  _calls->push_back(zib::utf8From(zib::native(call)));
}

@end

@interface RecordingObjectiveCCore : Recorder <ZIBCore>
@end

@implementation RecordingObjectiveCCore

- (ZIBConfig *)config {
  [self record:@"config"];
  return [[[ZIBConfig alloc] initWithAutoSwizzlingEnabled:NO] autorelease];
}

- (NSString *)pushConfigEndpoint {
  return [NSString stringWithFormat:@"%@", @"not an endpoint"];
}

- (void)log:(NSString *)message {
  [self record:message];
}

- (void)logFailure:(NSString *)message error:(NSError *)error {
  [self record:[NSString stringWithFormat:@"%@: %@ %ld", message, error.domain, (long)error.code]];
}

- (void)trackSelfDescribingEventWithSchema:(NSString *)schema
                                      data:(NSDictionary<NSString *, id> *)data {
  [self record:[NSString stringWithFormat:@"%@ %@", schema, [data objectForKey:@"event_type"]]];
}

- (void)registerPushToken:(NSString *)token {
  [self record:[@"registers " stringByAppendingString:token]];
}

- (void)savePushPermission:(BOOL)granted {
  [self record:granted ? @"granted" : @"denied"];
}

- (void)saveFCMToken:(NSString *)token {
  [self record:[@"saves " stringByAppendingString:token]];
}

@end

@interface EveryNews : Recorder <ZIBMessagingDelegate>
@end

@implementation EveryNews

- (void)zibMessaging:(ZIBMessaging *)messaging didReceiveToken:(NSString *)token {
  [self record:messaging == ZIBMessaging.shared ? token : @"another object"];
}

- (void)zibMessaging:(ZIBMessaging *)messaging didReceiveNotification:(NSDictionary *)userInfo {
  [self record:[userInfo objectForKey:@"_id"]];
}

- (void)zibMessaging:(ZIBMessaging *)messaging
    didReceiveNotificationResponse:(UNNotificationResponse *)response {
  [self record:response.actionIdentifier];
}

- (void)zibMessaging:(ZIBMessaging *)messaging didFailToRegisterWithError:(NSError *)error {
  [self record:error.domain];
}

@end

@interface NoNews : NSObject <ZIBMessagingDelegate>
@end

@implementation NoNews
@end

namespace {

using namespace std::string_literals;
using test::Device;
using Calls = std::vector<std::string>;

NSData *deviceToken() { return [NSData dataWithBytes:"\x8f\x3a" length:2]; }

UNNotification *notification() {
  return zib::as<UNNotification>(sim::usernotifications::makeNotification({{"_id", "u"}}));
}

UNNotificationResponse *response() {
  return zib::as<UNNotificationResponse>(
      sim::usernotifications::makeResponse({{"_id", "u"}}, "action_2"));
}

UIApplication *application() { return zib::as<UIApplication>(Device::application().native()); }

TEST(ZIBCoreTest, ReceivesWhatTheModuleHandsOver) {
  const zib::AutoreleasePool pool;
  sim::foundation::install();
  sim::uikit::install(sim::uikit::ApplicationPresence::present, true);
  sim::usernotifications::install(sim::usernotifications::Answer{});
  auto *const core = [[RecordingObjectiveCCore alloc] init];
  ASSERT_TRUE([ZIBMessaging installCore:core]);
  [ZIBMessaging.shared configureWithApplication:application()];
  [ZIBMessaging.shared didRegisterForRemoteNotificationsWithDeviceToken:deviceToken()];
  core->_calls->clear();
  [ZIBMessaging.shared setFCMToken:@"fcm-token"];
  [ZIBMessaging.shared trackNotificationOpenedWithUserInfo:@{}];
  NSError *error = [NSError errorWithDomain:@"Host" code:7 userInfo:nil];
  [ZIBMessaging.shared didFailToRegisterForRemoteNotificationsWithError:error];
  EXPECT_EQ(*core->_calls,
            (Calls{"📲 FCM token received (post-APNS): fcm-token...", "saves fcm-token",
                   "registers fcm-token",
                   "iglu:com.zib/notification_event/jsonschema/3-0-0 notification-clicked",
                   "Failed to register for push: Host 7"}));
  core->_calls->clear();
  [ZIBMessaging.shared registerForPushWithApplication:application()];
  Device::drain();
  EXPECT_EQ(core->_calls->at(1), "granted");
  EXPECT_TRUE(ZIBMessaging.shared.isPushEnabled);
  core->_calls->clear();
  __block int completed = 0;
  [ZIBPushConfig.shared configurePushWithApplication:application()
      configEndpoint:nil
      firebaseConfigHandler:^(NSDictionary *) {
      }
      completion:^(BOOL started) {
        completed += started ? 100 : 1;
      }];
  EXPECT_EQ(completed, 1);
  EXPECT_EQ(core->_calls->front(), "Fetching push configuration from: not an endpoint");
}

TEST(ZIBCoreTest, IsRefusedAndLetGoWhenThereIsOne) {
  const Device device;
  auto *const core = [[RecordingObjectiveCCore alloc] init];
  EXPECT_FALSE([ZIBMessaging installCore:core]);
  EXPECT_EQ(core.retainCount, 1U);
  EXPECT_EQ(device.errorLines().size(), 1U);
  [core release];
}

TEST(ZIBCoreTest, ThatIsNoneLeavesThePlaceToOne) {
  const zib::AutoreleasePool pool;
  sim::foundation::install();
  id<ZIBCore> none = nil;  // what the compiler cannot see
  testing::internal::CaptureStderr();
  EXPECT_FALSE([ZIBMessaging installCore:none]);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "zib_core_install: core is null\n");
  EXPECT_TRUE([ZIBMessaging installCore:[[RecordingObjectiveCCore alloc] init]]);
}

TEST(ZIBMessagingDelegateTest, HearsOfEverything) {
  const Device device;
  auto *const news = [[EveryNews alloc] init];
  ZIBMessaging.shared.delegate = news;
  [ZIBMessaging.shared setPushToken:deviceToken()];
  [ZIBMessaging.shared didReceiveRegistrationToken:@"fcm-token"];
  EXPECT_EQ([ZIBMessaging.shared willPresentNotification:notification()], 19U);
  [ZIBMessaging.shared didReceiveNotificationResponse:response()];
  NSError *error = [NSError errorWithDomain:ZIBPushErrorDomain
                                       code:ZIBPushErrorNoData
                                   userInfo:nil];
  [ZIBMessaging.shared didFailToRegisterForRemoteNotificationsWithError:error];
  const Calls all{"fcm-token", "u", "action_2", "ZibMessaging.ZibPushError"};
  EXPECT_EQ(*news->_calls, all);
  EXPECT_EQ(ZIBMessaging.shared.delegate, news);
  ZIBMessaging.shared.delegate = nil;
  [ZIBMessaging.shared willPresentNotification:notification()];
  EXPECT_EQ(*news->_calls, all);
  EXPECT_EQ(device.errorLines().size(), 1U);  // the failure
}

// A delegate of a host in C, which counts what it was called with.
struct NewsInC {
  int received = 0;
  int released = 0;

  bool set() {
    zib_messaging_delegate delegate{};
    delegate.size = sizeof(delegate);
    delegate.context = this;
    delegate.release = [](void *news) { ++static_cast<NewsInC *>(news)->released; };
    delegate.did_receive_notification = [](void *news, id) {
      ++static_cast<NewsInC *>(news)->received;
    };
    return zib_messaging_set_delegate(&delegate);
  }
};

TEST(ZIBMessagingDelegateTest, OfAHostInCStaysUntilThereIsAnother) {
  const Device device;
  NewsInC news;
  ASSERT_TRUE(news.set());
  EXPECT_EQ(ZIBMessaging.shared.delegate, nil);
  ZIBMessaging.shared.delegate = nil;
  [ZIBMessaging.shared willPresentNotification:notification()];
  EXPECT_EQ(news.received, 1);
  EXPECT_EQ(news.released, 0);
  auto *const other = [[EveryNews alloc] init];
  ZIBMessaging.shared.delegate = other;
  EXPECT_EQ(news.released, 1);
  [ZIBMessaging.shared willPresentNotification:notification()];
  EXPECT_EQ(*other->_calls, Calls{"u"});
  ZIBMessaging.shared.delegate = nil;
  EXPECT_FALSE(zib_messaging_has_delegate());
}

TEST(ZIBMessagingDelegateTest, IsWhatIsInForce) {
  const Device device;
  auto *const first = [[EveryNews alloc] init];
  auto *const second = [[EveryNews alloc] init];
  ZIBMessaging.shared.delegate = first;
  ZIBMessaging.shared.delegate = second;
  EXPECT_EQ(ZIBMessaging.shared.delegate, second);
  NewsInC news;
  ASSERT_TRUE(news.set());
  EXPECT_EQ(ZIBMessaging.shared.delegate, nil);
  ZIBMessaging.shared.delegate = nil;
  EXPECT_TRUE(zib_messaging_has_delegate());
  ZIBMessaging.shared.delegate = first;
  EXPECT_EQ(ZIBMessaging.shared.delegate, first);
  zib_messaging_set_delegate(nullptr);
  EXPECT_EQ(ZIBMessaging.shared.delegate, nil);
  [ZIBMessaging.shared willPresentNotification:notification()];
  EXPECT_EQ(*first->_calls, Calls());
  EXPECT_EQ(*second->_calls, Calls());
}

TEST(ZIBMessagingDelegateTest, NeedsNoMethods) {
  const Device device;
  ZIBMessaging.shared.delegate = [[NoNews alloc] init];
  [ZIBMessaging.shared willPresentNotification:notification()];
  [ZIBMessaging.shared didReceiveNotificationResponse:response()];
  EXPECT_EQ(device.errorLines(), Calls());
}

TEST(ZIBMessagingTest, HasTheModulesState) {
  const Device device;
  EXPECT_EQ(ZIBMessaging.shared.fcmToken, nil);
  EXPECT_EQ(ZIBMessaging.shared.apnsToken, nil);
  EXPECT_EQ(ZIBPushConfig.shared.savedFirebasePlistPath, nil);
  [ZIBMessaging.shared setPushToken:deviceToken()];
  EXPECT_TRUE([ZIBMessaging.shared.apnsToken isEqual:deviceToken()]);
  EXPECT_TRUE([ZIBMessaging.shared setEventVendor:@"com.example"]);
  EXPECT_TRUE([ZIBMessaging.shared.notificationEventSchemaURI
      isEqual:@"iglu:com.example/notification_event/jsonschema/3-0-0"]);
}

TEST(ZIBMessagingTest, KeepsWatchWhereTheHostAsksForIt) {
  const Device device;
  EXPECT_EQ(ZIBMessaging.shared.delegateDiscovery, ZIBDelegateDiscoveryOnceWithRetry);
  ZIBMessaging.shared.delegateDiscovery = ZIBDelegateDiscoveryContinuous;
  EXPECT_EQ(ZIBMessaging.shared.delegateDiscovery, ZIBDelegateDiscoveryContinuous);
  [ZIBMessaging.shared configureWithApplication:application()];
  [ZIBMessaging.shared didReceiveNotificationResponse:response()];
  EXPECT_EQ(device.errorLines(), Calls());
}

TEST(ZIBMessagingTest, ReportsWhoStandsBeforeTheDelegates) {
  const zib::AutoreleasePool pool;
  const Device device;
  ZIBMessaging.shared.delegateDiscovery = ZIBDelegateDiscoveryContinuous;
  [ZIBMessaging.shared configureWithApplication:application()];
  ZIBIntegrationReport *const report = [ZIBMessaging.shared integrationReport];
  ASSERT_EQ(report.rows.count, 7U);
  ZIBIntegrationRow *const absent = [report.rows objectAtIndex:0];
  EXPECT_EQ(absent.delegateClass, nil);
  EXPECT_EQ(absent.state, ZIBIntegrationStateNone);
  EXPECT_EQ(absent.chain.count, 0U);
  EXPECT_TRUE([absent.remarks isEqual:@[ @"no application delegate" ]]);
  ZIBIntegrationRow *const present = [report.rows objectAtIndex:4];
  EXPECT_TRUE([present.method
      isEqual:@"userNotificationCenter:willPresentNotification:withCompletionHandler:"]);
  EXPECT_TRUE([present.delegateClass isEqual:@"ZibMessaging"]);
  EXPECT_EQ(present.state, ZIBIntegrationStateSwapped);
  ASSERT_EQ(present.chain.count, 2U);
  ZIBIntegrationFunction *const outermost = [present.chain objectAtIndex:0];
  EXPECT_EQ(zib::utf8From(zib::native(outermost.image)), test::imageOfModule());
  EXPECT_TRUE([outermost.symbol
      isEqual:@"-[ZibSwizzleManager zib_willPresent:notification:completionHandler:]"]);
  EXPECT_EQ([report.text rangeOfString:@"no application delegate"].length, 23U);
  EXPECT_EQ(device.errorLines(), Calls());
}

TEST(ZIBMessagingTest, CutsNoText) {
  const Device device;
  [ZIBMessaging.shared setPushToken:deviceToken()];
  const unichar units[] = {'a', 0, 0xE9, 'b'};
  [ZIBMessaging.shared setFCMToken:[NSString stringWithCharacters:units length:4]];
  EXPECT_EQ(device.errorLines(), Calls());
  EXPECT_EQ(zib::utf8From(zib::native(ZIBMessaging.shared.fcmToken)), "a\0\u00E9b"s);
}

TEST(ZIBMessagingTest, SaysWhatIsMissing) {
  const Device device;
  ZIBMessaging *const messaging = ZIBMessaging.shared;
  // What the compiler cannot see.
  NSData *noData = nil;
  NSString *noText = nil;
  UNNotification *noNotification = nil;
  [messaging setPushToken:noData];
  [messaging setFCMToken:noText];
  EXPECT_EQ([messaging willPresentNotification:noNotification], 0U);
  EXPECT_EQ([ZIBPayloadBuilder createEventPayloadWithEventName:noText properties:nil].count, 0U);
  EXPECT_EQ(device.errorLines(),
            (Calls{"zib_messaging_set_push_token: device_token is null",
                   "zib_messaging_set_fcm_token: token is null",
                   "zib_messaging_will_present: notification is null",
                   "zib_payload_builder_create_event_payload: event_name is null"}));
}

TEST(ZIBDeepLinkHandlerTest, AsksTheHostFirst) {
  const Device device;
  __block int asked = 0;
  ZIBDeepLinkHandler.shared.urlDelegate = ^BOOL(NSURL *url) {
    ++asked;
    return [url.absoluteString isEqual:@"https://example.com/ours"];
  };
  NSDictionary *ours = @{@"link" : @"https://example.com/ours"};
  EXPECT_TRUE([ZIBDeepLinkHandler.shared handleNotificationURLFromUserInfo:ours]);
  EXPECT_EQ(device.infoLines().back(), "ZibDeepLinkHandler: Handled by urlDelegate");
  EXPECT_TRUE(
      ZIBDeepLinkHandler.shared.urlDelegate([NSURL URLWithString:@"https://example.com/ours"]));
  EXPECT_EQ(asked, 2);
  NSURL *url = [NSURL URLWithString:@"https://example.com"];
  EXPECT_TRUE([ZIBDeepLinkHandler.shared handleURL:url source:@"test"]);
  EXPECT_EQ(device.infoLines().back(), "ZibDeepLinkHandler: URL from test - https://example.com");
}

TEST(ZIBDeepLinkHandlerTest, HasTheBlockThatIsInForce) {
  const Device device;
  const auto answersYes = [](void *, zib_object, zib_text) { return true; };
  NSDictionary *link = @{@"link" : @"https://example.com/ours"};
  __block int asked = 0;
  BOOL (^const block)(NSURL *) = ^BOOL(NSURL *) {
    ++asked;
    return YES;
  };
  ZIBDeepLinkHandler.shared.urlDelegate = block;
  zib_deep_link_handler_set_url_delegate(answersYes, nullptr, nullptr);
  EXPECT_TRUE(ZIBDeepLinkHandler.shared.urlDelegate == nil);
  [ZIBDeepLinkHandler.shared handleNotificationURLFromUserInfo:link];
  EXPECT_EQ(asked, 0);

  ZIBDeepLinkHandler.shared.urlDelegate = block;
  EXPECT_TRUE(ZIBDeepLinkHandler.shared.urlDelegate != nil);
  [ZIBDeepLinkHandler.shared handleNotificationURLFromUserInfo:link];
  EXPECT_EQ(asked, 1);
  zib_deep_link_handler_set_url_delegate(nullptr, nullptr, nullptr);
  EXPECT_TRUE(ZIBDeepLinkHandler.shared.urlDelegate == nil);
}

TEST(ZIBDeepLinkHandlerTest, LetsGoOfABlockThatAHostInCReplaced) {
  const Device device;
  std::weak_ptr<int> seen;
  {
    const zib::AutoreleasePool pool;
    const auto held = std::make_shared<int>(0);
    seen = held;
    ZIBDeepLinkHandler.shared.urlDelegate = ^BOOL(NSURL *) {
      return *held == 0;
    };
  }
  EXPECT_FALSE(seen.expired());
  zib_deep_link_handler_set_url_delegate(nullptr, nullptr, nullptr);
  EXPECT_TRUE(seen.expired());
}

// In C++: this block runtime retains no objects for a block.
using Held = std::shared_ptr<int>;

TEST(ZIBDeepLinkHandlerTest, LetsBlocksGo) {
  const Device device;
  std::weak_ptr<int> seen;
  for (int index = 0; index < 3; ++index) {
    const zib::AutoreleasePool pool;
    const Held held = std::make_shared<int>(index);
    const std::weak_ptr<int> former = std::exchange(seen, held);
    ZIBDeepLinkHandler.shared.urlDelegate = ^BOOL(NSURL *) {
      return *held == 2;
    };
    EXPECT_TRUE(former.expired());
  }
  EXPECT_FALSE(seen.expired());
  {
    // What the getter gave outlives what replaced it.
    const zib::AutoreleasePool pool;
    BOOL (^const given)(NSURL *) = ZIBDeepLinkHandler.shared.urlDelegate;
    ZIBDeepLinkHandler.shared.urlDelegate = nil;
    NSURL *url = [NSURL URLWithString:@"https://example.com"];
    EXPECT_TRUE(given(url));
  }
  EXPECT_TRUE(seen.expired());
  EXPECT_TRUE(ZIBDeepLinkHandler.shared.urlDelegate == nil);
}

std::weak_ptr<int> startFlow(NSString *endpoint, std::vector<std::string> *calls) {
  const zib::AutoreleasePool pool;
  const Held held = std::make_shared<int>(0);
  [ZIBPushConfig.shared configurePushWithApplication:application()
      configEndpoint:endpoint
      firebaseConfigHandler:^(NSDictionary *config) {
        ++*held;
        calls->push_back([[config objectForKey:@"API_KEY"] UTF8String]);
      }
      completion:^(BOOL started) {
        ++*held;
        calls->push_back(started ? "started" : "not started");
      }];
  return held;
}

TEST(ZIBPushConfigTest, CallsEachBlockOnceAndLetsItGo) {
  test::PushFlow flow;
  flow.connect();
  Calls calls;
  const auto first = startFlow(@"https://config.example/push.json", &calls);
  EXPECT_FALSE(first.expired());
  Device::drain();
  EXPECT_EQ(calls, (Calls{"k-1", "started"}));
  EXPECT_TRUE(first.expired());
  const auto second = startFlow(@"https://elsewhere.example", &calls);
  Device::drain();
  EXPECT_EQ(calls, (Calls{"k-1", "started", "not started"}));
  EXPECT_TRUE(second.expired());
}

TEST(ZIBPayloadBuilderTest, BuildsBothPayloads) {
  const Device device;
  NSDictionary *const notification =
      [ZIBPayloadBuilder createNotificationPayloadFromUserInfo:@{@"_id" : @"u"}
                                                     eventType:@"opened"];
  EXPECT_EQ(notification.count, 14U);
  EXPECT_TRUE([[notification objectForKey:@"domain_userid"] isEqual:@"u"]);
  NSDictionary *const event = [ZIBPayloadBuilder createEventPayloadWithEventName:@"visit"
                                                                      properties:@{
                                                                        @"page" : @1
                                                                      }];
  EXPECT_TRUE([[event objectForKey:@"properties"] isEqual:@{@"page" : @1}]);
}

}  // namespace
