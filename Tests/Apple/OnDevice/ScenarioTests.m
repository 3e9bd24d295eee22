// Plays a scenario in an app on a simulator or a phone, through the real UIKit, UserNotifications
// and object runtime. An XCTest bundle with a host app, Sources and ZibObjectiveC, and the
// scenario's file as a resource. The module's state is the process's, so a run plays one scenario:
// the one that the environment names as ZIB_SCENARIO, or first-light.
//
// The steps that only the user or Apple's servers can take are passed over, and what follows from
// them alone is not expected. It has been compiled, never run.

#import <UIKit/UIKit.h>
#import <UserNotifications/UserNotifications.h>
#import <XCTest/XCTest.h>
#import <dispatch/dispatch.h>

#import "PlayedObjects.h"
#import "Timeline.h"
#import "ZibObjectiveC.h"

NS_ASSUME_NONNULL_BEGIN

@interface ZIBRecordingCore : NSObject <ZIBCore>
- (instancetype)initWithTimeline:(ZIBTimeline *)timeline;
@end

@implementation ZIBRecordingCore {
  ZIBTimeline *_timeline;
}
- (instancetype)initWithTimeline:(ZIBTimeline *)timeline {
  self = [super init];
  if (self) _timeline = timeline;
  return self;
}
- (nullable ZIBConfig *)config {
  return nil;
}
- (nullable NSString *)pushConfigEndpoint {
  return nil;
}
- (void)log:(NSString *)message {
  [_timeline add:@{@"kind" : @"log", @"level" : @"info", @"message" : message}];
}
- (void)logFailure:(NSString *)message error:(nullable NSError *)error {
  [_timeline add:@{@"kind" : @"log", @"level" : @"error", @"message" : message}];
}
- (void)trackSelfDescribingEventWithSchema:(NSString *)schema
                                      data:(NSDictionary<NSString *, id> *)data {
  [_timeline add:@{@"kind" : @"event", @"schema" : schema, @"data" : data}];
}
- (void)registerPushToken:(NSString *)token {
}
- (void)savePushPermission:(BOOL)granted {
}
- (void)saveFCMToken:(NSString *)token {
}
@end

// The app's own delegates, as the scenario's host describes them.
@interface ZIBPlayedHost : NSObject <UIApplicationDelegate, UNUserNotificationCenterDelegate>
@property(nonatomic) UNNotificationPresentationOptions options;
@end

@implementation ZIBPlayedHost
- (void)application:(UIApplication *)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)deviceToken {
}
- (BOOL)application:(UIApplication *)application
            openURL:(NSURL *)url
            options:(NSDictionary<UIApplicationOpenURLOptionsKey, id> *)options {
  return YES;
}
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:
             (void (^)(UNNotificationPresentationOptions options))completionHandler {
  completionHandler(self.options);
}
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler {
  completionHandler();
}
@end

static NSData *dataFromHex(NSString *hex) {
  NSMutableData *const data = [NSMutableData data];
  const char *const digits = "0123456789abcdef";
  unsigned char byte = 0;
  for (NSUInteger i = 0; i < hex.length; ++i) {
    unsigned char digit = 0;
    NSString *const character = [hex substringWithRange:NSMakeRange(i, 1)];
    while (digits[digit] &&
           ![character isEqualToString:[NSString stringWithFormat:@"%c", digits[digit]]])
      ++digit;
    byte = (unsigned char)(byte << 4 | digit);
    if (i % 2 == 1) [data appendBytes:&byte length:1];
  }
  return data;
}

@interface ZIBScenarioTests : XCTestCase
@end

@implementation ZIBScenarioTests {
  ZIBTimeline *_timeline;
  ZIBPlayedHost *_host;
}

- (void)testScenario {
  self.continueAfterFailure = NO;
  NSDictionary *const scenario = [self readScenario];
  XCTAssertNotNil(scenario, @"the bundle has no such scenario, or it is no JSON");
  [self setUpHost:scenario];
  NSArray<NSDictionary *> *const steps = scenario[@"steps"];
  for (NSUInteger i = 0; i < steps.count; ++i) [self play:steps[i]];
  [self letMainQueueRun];
  NSDictionary *const unmet = [_timeline firstUnmetOf:scenario[@"expect"]];
  XCTAssertTrue(unmet == nil, @"not as expected: %@", unmet);
}

- (nullable NSDictionary *)readScenario {
  NSString *const name = NSProcessInfo.processInfo.environment[@"ZIB_SCENARIO"] ?: @"first-light";
  NSURL *const url = [[NSBundle bundleForClass:ZIBScenarioTests.class] URLForResource:name
                                                                        withExtension:@"json"];
  NSData *const data = url ? [NSData dataWithContentsOfURL:(NSURL *_Nonnull)url] : nil;
  return data ? [NSJSONSerialization JSONObjectWithData:(NSData *_Nonnull)data options:0 error:nil]
              : nil;
}

- (void)setUpHost:(NSDictionary *)scenario {
  _timeline = [[ZIBTimeline alloc] init];
  XCTAssertTrue([ZIBMessaging installCore:[[ZIBRecordingCore alloc] initWithTimeline:_timeline]],
                @"the app has installed a core of its own");
  _host = [[ZIBPlayedHost alloc] init];
  NSDictionary *const delegate = scenario[@"host"][@"notificationDelegate"];
  NSNumber *const options = delegate[@"options"];
  _host.options = options.unsignedIntegerValue;
  UIApplication.sharedApplication.delegate = _host;
  UNUserNotificationCenter.currentNotificationCenter.delegate = _host;
  // A link is taken before it would leave the app.
  ZIBTimeline *const timeline = _timeline;
  ZIBDeepLinkHandler.shared.urlDelegate = ^BOOL(NSURL *url) {
    [timeline add:@{@"kind" : @"system", @"operation" : @"openURL", @"url" : url.absoluteString}];
    return YES;
  };
}

- (void)play:(NSDictionary *)step {
  NSString *const verb = step[@"do"];
  UIApplication *const application = UIApplication.sharedApplication;
  if ([verb isEqualToString:@"configure"]) {
    [ZIBMessaging.shared configureWithApplication:application];
    [self letMainQueueRun];
  } else if ([verb isEqualToString:@"deviceToken"]) {
    [application.delegate application:application
        didRegisterForRemoteNotificationsWithDeviceToken:dataFromHex(step[@"hex"])];
  } else if ([verb isEqualToString:@"call"]) {
    [self call:step[@"operation"] with:step[@"arguments"]];
  } else if ([verb isEqualToString:@"present"]) {
    [self present:step[@"userInfo"]];
  } else if ([verb isEqualToString:@"respond"]) {
    [self respond:step[@"userInfo"]
             with:step[@"action"] ?: @"com.apple.UNNotificationDefaultActionIdentifier"];
  } else if ([verb isEqualToString:@"openURL"]) {
    NSURL *const url = [NSURL URLWithString:step[@"url"]];
    XCTAssertNotNil(url, @"no URL: %@", step);
    if (url) [application.delegate application:application openURL:url options:@{}];
  } else {
    NSArray<NSString *> *const passedOver =
        @[ @"registerForPush", @"answerAuthorization", @"advance", @"state" ];
    XCTAssertTrue([passedOver containsObject:verb], @"a device cannot be told to %@", verb);
  }
}

- (void)call:(NSString *)operation with:(NSDictionary *)arguments {
  XCTAssertTrue([operation isEqualToString:@"setFCMToken"], @"not played: %@", operation);
  [ZIBMessaging.shared setFCMToken:arguments[@"token"]];
}

- (void)present:(NSDictionary *)userInfo {
  UNUserNotificationCenter *const center = UNUserNotificationCenter.currentNotificationCenter;
  ZIBTimeline *const timeline = _timeline;
  [center.delegate userNotificationCenter:center
                  willPresentNotification:PlayedNotification(userInfo)
                    withCompletionHandler:^(UNNotificationPresentationOptions options) {
                      [timeline add:@{
                        @"kind" : @"completion",
                        @"of" : @"willPresent",
                        @"options" : @(options)
                      }];
                    }];
}

- (void)respond:(NSDictionary *)userInfo with:(NSString *)action {
  UNUserNotificationCenter *const center = UNUserNotificationCenter.currentNotificationCenter;
  ZIBTimeline *const timeline = _timeline;
  [center.delegate userNotificationCenter:center
           didReceiveNotificationResponse:PlayedResponse(userInfo, action)
                    withCompletionHandler:^{
                      [timeline add:@{@"kind" : @"completion", @"of" : @"didReceive"}];
                    }];
  [self letMainQueueRun];
}

- (void)letMainQueueRun {
  XCTestExpectation *const turn = [self expectationWithDescription:@"a turn of the main queue"];
  dispatch_async(dispatch_get_main_queue(), ^{
    [turn fulfill];
  });
  [self waitForExpectations:@[ turn ] timeout:5];
}

@end

NS_ASSUME_NONNULL_END
