// What a host or a core throws stays where it was thrown: the operation goes on, the system gets
// its completion, and the core hears of it once.

#include "Tests/Support/RowName.h"
#include "ZibMessaging/Private/Containment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "Tests/Support/Delegates.h"
#include "Tests/Support/Device.h"
#include "Tests/Support/Exceptions.h"
#include "Tests/Support/Host.h"
#include "Tests/Support/TestSeam.h"
#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibMessaging/ZibSwizzleManager.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace {

using test::Device;
using test::Thrown;
using zib::Object;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

constexpr const char* link = "https://example.com/link";

class ThrowingDelegate final : public ZibMessagingDelegate {
 public:
  explicit ThrowingDelegate(Thrown kind) : kind_(kind) {}
  void zibMessagingDidReceiveToken(ZibMessaging&, std::string_view) override { test::raise(kind_); }
  void zibMessagingDidReceiveNotification(ZibMessaging&, const zib::Dictionary&) override {
    test::raise(kind_);
  }
  void zibMessagingDidReceiveNotificationResponse(ZibMessaging&,
                                                  const zib::NotificationResponse&) override {
    test::raise(kind_);
  }
  void zibMessagingDidFailToRegisterWithError(ZibMessaging&, const zib::Error&) override {
    test::raise(kind_);
  }

 private:
  Thrown kind_;
};

class ThrowingLogger final : public ZibLogger {
 public:
  explicit ThrowingLogger(Thrown kind) : kind_(kind) {}
  void log(std::string_view) override { test::raise(kind_); }
  void error(std::string_view, const std::optional<zib::Error>&) override { test::raise(kind_); }

 private:
  Thrown kind_;
};

class ThrowingCore final : public Zib {
 public:
  explicit ThrowingCore(Thrown kind) : kind_(kind) {}
  [[nodiscard]] std::optional<ZibConfig> config() const override { test::raise(kind_); }
  void trackSelfDescribingEvent(std::string_view, const zib::ValueMap&) override {
    test::raise(kind_);
  }
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override {
    test::raise(kind_);
  }
  void registerPushToken(std::string_view) override { test::raise(kind_); }

 private:
  Thrown kind_;
};

class ThrowingStorage final : public ZibStorage {
 public:
  explicit ThrowingStorage(Thrown kind) : kind_(kind) {}
  void savePushPermission(bool) override { test::raise(kind_); }
  void saveFCMToken(std::string_view) override { test::raise(kind_); }

 private:
  Thrown kind_;
};

class ContainmentTest : public testing::TestWithParam<Thrown> {
 protected:
  static zib::NotificationResponse response() {
    return zib::NotificationResponse::retained(
        sim::usernotifications::makeResponse({{"url", link}}, "tap").raw());
  }
  static std::string stopped(const char* operation) {
    return std::string("ZibMessaging: stopped an exception in ") + operation;
  }
  static const char* descriptionOf(Thrown kind) {
    switch (kind) {
      case Thrown::standard:
        return "planned";
      case Thrown::speechless:
      case Thrown::ofItsOwnType:
        return "an exception of a type of its own";
      case Thrown::platform:
        return "Planned: planned for the platform";
      case Thrown::platformThatRaises:
        return "RaisingException: no reason given";
    }
    return nullptr;
  }
  static const zib::Bytes& token() {
    static const zib::Bytes token{0x00, 0x01, 0xAB};
    return token;
  }
};

INSTANTIATE_TEST_SUITE_P(EveryKind, ContainmentTest, testing::ValuesIn(test::everyThrown),
                         test::rowName);

using Lines = std::vector<std::string>;

TEST_P(ContainmentTest, WorkThatThrowsIsReportedOnce) {
  const Device device;
  zib::contained("some work", [] { test::raise(GetParam()); });
  EXPECT_EQ(device.errorLines(), Lines{stopped("some work")});
  const sim::Json error = device.entries("log").front().at("error");
  EXPECT_EQ(error.at("domain"), "ZibMessaging");
  EXPECT_EQ(error.at("description"), descriptionOf(GetParam()));
}

TEST_P(ContainmentTest, WorkWithAResultThatThrowsGivesTheOther) {
  const Device device;
  EXPECT_EQ(zib::containedOr(1, "some work", [] { return 2; }), 2);
  EXPECT_TRUE(device.errorLines().empty());
  EXPECT_EQ(zib::containedOr(1, "some work", []() -> int { test::raise(GetParam()); }), 1);
  EXPECT_EQ(device.errorLines(), Lines{stopped("some work")});
}

TEST_P(ContainmentTest, ADelegateThatThrowsAtATapDoesNotCostTheLinkOrTheCompletion) {
  const Device device;
  const Object host = test::makeHost("ContainmentHost", test::everyHostMethod);
  test::useForEverything(host);
  ZibMessaging::shared().configure(Device::application());
  const auto delegate = std::make_shared<ThrowingDelegate>(GetParam());
  ZibMessaging::shared().setDelegate(delegate);
  Device::drain();
  int completions = 0;
  test::didReceive(host.raw(), response().native(),
                   zib::Block<void()>::from([&] { ++completions; }));
  Device::drain();
  EXPECT_EQ(completions, 1);
  EXPECT_EQ(device.entries("event").size(), 1U);
  EXPECT_EQ(device.entries("host").size(), 1U);
  EXPECT_EQ(device.countOfLine(std::string("ZibDeepLinkHandler: Opening URL - ") + link), 1U);
  EXPECT_EQ(device.countOfLine("ZibDeepLinkHandler: URL open succeeded"), 1U);
  EXPECT_EQ(device.errorLines(), Lines{stopped("zibMessagingDidReceiveNotificationResponse")});
}

TEST_P(ContainmentTest, ADelegateThatThrowsAtAPresentationDoesNotCostTheOptions) {
  const Device device;
  const Object host = test::makeHost("ContainmentHost", {});
  test::useForEverything(host);
  ZibMessaging::shared().configure(Device::application());
  const auto delegate = std::make_shared<ThrowingDelegate>(GetParam());
  ZibMessaging::shared().setDelegate(delegate);
  std::vector<UInteger> options;
  test::willPresent(
      host.raw(), sim::usernotifications::makeNotification({}).raw(),
      zib::Block<void(UInteger)>::from([&](UInteger chosen) { options.push_back(chosen); }));
  EXPECT_EQ(options, std::vector<UInteger>{19});
  EXPECT_EQ(device.entries("event").size(), 1U);
  EXPECT_EQ(device.errorLines(), Lines{stopped("zibMessagingDidReceiveNotification")});
}

TEST_P(ContainmentTest, ADelegateThatThrowsAtATokenOrAFailureIsReportedOnce) {
  const Device device;
  const auto delegate = std::make_shared<ThrowingDelegate>(GetParam());
  ZibMessaging::shared().setDelegate(delegate);
  ZibMessaging::shared().setPushToken(token());
  ZibMessaging::shared().setFCMToken("token");
  EXPECT_EQ(ZibMessaging::shared().fcmToken(), "token");
  EXPECT_EQ(device.entries("storage").size(), 1U);
  EXPECT_EQ(device.entries("core").size(), 1U);
  EXPECT_EQ(device.errorLines(), Lines{stopped("zibMessagingDidReceiveToken")});
  ZibMessaging::shared().didFailToRegisterForRemoteNotifications({"d", 1, "t", {}});
  EXPECT_EQ(device.errorLines(),
            (Lines{stopped("zibMessagingDidReceiveToken"), "Failed to register for push",
                   stopped("zibMessagingDidFailToRegisterWithError")}));
}

class OrdinaryDelegate final : public ZibMessagingDelegate {
 public:
  void zibMessagingDidReceiveNotificationResponse(ZibMessaging&,
                                                  const zib::NotificationResponse&) override {
    ++responses;
  }
  int responses = 0;
};

TEST_P(ContainmentTest, ACoreThatThrowsAtAnEventCostsNeitherTheDelegateNorTheLink) {
  Zib::install(std::make_unique<ThrowingCore>(GetParam()));
  const Device device;
  const auto delegate = std::make_shared<OrdinaryDelegate>();
  ZibMessaging::shared().setDelegate(delegate);
  ZibMessaging::shared().didReceive(response());
  Device::drain();
  EXPECT_EQ(delegate->responses, 1);
  EXPECT_EQ(device.countOfLine("ZibDeepLinkHandler: URL open succeeded"), 1U);
  EXPECT_EQ(device.errorLines(), Lines{stopped("trackSelfDescribingEvent")});
}

TEST_P(ContainmentTest, ALoggerThatThrowsCostsNeitherTokensNorCategories) {
  ZibLogger::install(std::make_unique<ThrowingLogger>(GetParam()));
  const Device device;
  ZibMessaging::shared().configure(Device::application());
  EXPECT_TRUE(ZibTestSeam::swizzlingConfigured());
  ZibMessaging::shared().setPushToken(token());
  ZibMessaging::shared().setFCMToken("token");
  EXPECT_EQ(ZibMessaging::shared().apnsToken(), token());
  EXPECT_EQ(ZibMessaging::shared().fcmToken(), "token");
  EXPECT_EQ(device.entries("storage").size(), 1U);
  EXPECT_EQ(device.entries("core").size(), 1U);
  ZibMessaging::shared().registerForPush(Device::application());
  ASSERT_TRUE(sim::usernotifications::answerOldestRequest({true, std::nullopt}));
  Device::drain();
  const std::vector<sim::Json> asked = device.entries("system");
  EXPECT_EQ(std::ranges::count(asked, "setNotificationCategories",
                               [](const sim::Json& entry) { return entry.at("operation"); }),
            1);
}

id throwingMessaging(id, SEL) { test::raise(ContainmentTest::GetParam()); }

TEST_P(ContainmentTest, AFirebaseThatThrowsCostsNeitherTheFlagNorTheRetry) {
  const Device device;
  sim::firebase::set({});
  const zib::Class firebase = sim::metaclassOf(zib::Class::named("FIRMessaging"));
  const zib::objc::IMP messaging = sim::installMethod(firebase, "messaging", &throwingMessaging);
  ZibMessaging::shared().configure(Device::application());
  EXPECT_TRUE(ZibTestSeam::swizzlingConfigured());
  EXPECT_EQ(device.errorLines(), (Lines{stopped("swizzleFirebaseMessagingDelegate"),
                                        stopped("ensureFirebaseMessagingDelegate")}));
  firebase.instanceMethod(zib::selector<"messaging">()).setImplementation(messaging);
  Device::advance(0.2);
  EXPECT_EQ(sim::firebase::delegate(), ZibMessaging::runtimeObject());
}

TEST_P(ContainmentTest, AURLCallbackThatThrowsHasNotHandledTheLink) {
  const Device device;
  ZibDeepLinkHandler::shared().setURLDelegate(
      [](const zib::URL&) -> bool { test::raise(GetParam()); });
  EXPECT_TRUE(
      ZibDeepLinkHandler::shared().handleNotificationURL(zib::Dictionary::from({{"url", link}})));
  Device::drain();
  EXPECT_EQ(device.countOfLine("ZibDeepLinkHandler: URL open succeeded"), 1U);
  EXPECT_EQ(device.errorLines(), Lines{stopped("urlDelegate")});
}

void throwingRegister(id, SEL) { test::raise(Thrown::platform); }

TEST_P(ContainmentTest, AnApplicationThatThrowsIsContainedOnTheMainQueue) {
  const Device device;
  sim::installMethod(zib::Class::named("UIApplication"), "registerForRemoteNotifications",
                     &throwingRegister);
  ZibMessaging::shared().registerForPush(Device::application());
  ASSERT_TRUE(sim::usernotifications::answerOldestRequest({true, std::nullopt}));
  Device::drain();
  EXPECT_TRUE(ZibMessaging::shared().isPushEnabled());
  EXPECT_EQ(device.errorLines(), Lines{stopped("registerForRemoteNotifications")});
}

// What resume did before, which the method below calls on.
zib::objc::IMP startingResume = nullptr;

void throwingResume(id task, SEL command) {
  zib::callImplementation<void>(startingResume, task, zib::Selector(command));
  test::raise(ContainmentTest::GetParam());
}

TEST_P(ContainmentTest, AnExchangeThatThrowsAfterItsStartEndsTheFlowOnce) {
  Device device;
  sim::Reply configuration;
  configuration.body =
      R"({"ios_config_toggle": true, "ios_private_key_url": "https://config.example/plist"})";
  device.connectTo({{"config.example", {{"/push.json", configuration}}}});
  startingResume =
      sim::installMethod(zib::Class::named("NSURLSessionDataTask"), "resume", &throwingResume);
  std::vector<bool> outcomes;
  int handed = 0;
  ZibPushConfig::shared().configurePush(
      Device::application(), "https://config.example/push.json",
      [&](const zib::Dictionary&) { ++handed; },
      [&](bool isRegistering) { outcomes.push_back(isRegistering); });
  Device::drain();
  EXPECT_EQ(outcomes, std::vector<bool>{false});
  EXPECT_EQ(handed, 0);
  EXPECT_EQ(device.entries("http").size(), 1U);
  EXPECT_EQ(device.errorLines(), Lines{stopped("configurePush")});
  EXPECT_EQ(device.infoLines(),
            Lines{"Fetching push configuration from: https://config.example/push.json"});
}

// Everything that a host can call, and everything that the system calls.
void useEverything(const Object& host, int& completions) {
  ZibMessaging& messaging = ZibMessaging::shared();
  messaging.configure(Device::application());
  messaging.registerForPush(Device::application());
  sim::usernotifications::answerOldestRequest({true, std::nullopt});
  Device::drain();
  messaging.registerForPush(Device::application());
  sim::usernotifications::answerOldestRequest({false, zib::Error{"d", 1, "t", {}}});
  Device::advance(2);
  const zib::Bytes bytes{1, 2, 3};
  messaging.setPushToken(bytes);
  messaging.didReceiveRegistrationToken("token");
  messaging.trackNotificationReceived({});
  messaging.trackNotificationOpened({});
  messaging.setupAsNotificationDelegate();
  messaging.ensureFirebaseMessagingDelegate();
  ZibDeepLinkHandler::shared().handleURL(*zib::URL::parse(link), "test");

  const Object notification = sim::usernotifications::makeNotification({});
  const Object response = sim::usernotifications::makeResponse({{"url", link}}, "tap");
  const Object url = Object::retained(zib::URL::parse("https://example.com/?utm_a=b")->native());
  const zib::Block<void()> done = zib::Block<void()>::from([&] { ++completions; });
  const auto chosen = zib::Block<void(UInteger)>::from([&](UInteger) { ++completions; });
  for (const id delegate : {host.raw(), ZibMessaging::runtimeObject()}) {
    test::willPresent(delegate, notification.raw(), chosen);
    test::didReceive(delegate, response.raw(), done);
    test::fcmToken(delegate, zib::makeString("token").raw());
  }
  test::deviceToken(host.raw(), zib::makeData(bytes).raw());
  test::registrationFailure(host.raw(), zib::Error{"d", 1, "t", {}}.nativeError().raw());
  test::openURL(host.raw(), url.raw());
  test::openURLContexts(host.raw(), nullptr, sim::uikit::makeURLContexts({url}).raw());
  Device::advance(2);
}

// Both delegates complete both callbacks.
constexpr int expectedCompletions = 4;

TEST_P(ContainmentTest, ALoggerThatThrowsStopsNothingOfTheSystems) {
  ZibLogger::install(std::make_unique<ThrowingLogger>(GetParam()));
  const Device device;
  const Object host = test::makeHost("ContainmentHost", test::everyHostMethod);
  test::useForEverything(host);
  int completions = 0;
  useEverything(host, completions);
  EXPECT_EQ(completions, expectedCompletions);
}

TEST_P(ContainmentTest, ALoggerThatThrowsWhileAnExceptionIsReported) {
  ZibLogger::install(std::make_unique<ThrowingLogger>(GetParam()));
  const Device device;
  for (const Thrown first : test::everyThrown)
    zib::contained("some work", [&] { test::raise(first); });
}

TEST_P(ContainmentTest, ACoreThatThrowsStopsNothingOfTheSystems) {
  Zib::install(std::make_unique<ThrowingCore>(GetParam()));
  ZibStorage::install(std::make_unique<ThrowingStorage>(GetParam()));
  const Device device;
  const Object host = test::makeHost("ContainmentHost", test::everyHostMethod);
  test::useForEverything(host);
  ZibSwizzleManager::shared().setupAutoSwizzling();
  int completions = 0;
  useEverything(host, completions);
  EXPECT_EQ(completions, expectedCompletions);
  EXPECT_EQ(device.entries("host").size(), 7U);
}

void throwingDidRegister(id, SEL, id, id) { test::raise(ContainmentTest::GetParam()); }
BOOL throwingOpenURL(id, SEL, id, id, id) { test::raise(ContainmentTest::GetParam()); }
void throwingDidReceive(id, SEL, id, id, zib::BlockLayout*) {
  test::raise(ContainmentTest::GetParam());
}

TEST_P(ContainmentTest, WhatTheHostsOwnMethodThrowsPassesThrough) {
  const Device device;
  const Object host = Object::adopted(zib::send<id>(
      zib::ClassBuilder("ContainmentThrowingHost", zib::classNamed<"NSObject">())
          .method("application:didRegisterForRemoteNotificationsWithDeviceToken:",
                  &throwingDidRegister)
          .method("application:openURL:options:", &throwingOpenURL)
          .method("userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
                  &throwingDidReceive)
          .registerClass()
          .object(),
      zib::selector<"new">()));
  test::useForEverything(host);
  ZibMessaging::shared().configure(Device::application());
  Device::drain();
  const Object data = zib::makeData(token());
  const Object url = Object::retained(zib::URL::parse(link)->native());
  int completions = 0;
  const auto done = zib::Block<void()>::from([&] { ++completions; });
  // Twice: what the first one leaves behind must not hide the second.
  for (int round = 0; round < 2; ++round) {
    EXPECT_ANY_THROW(test::deviceToken(host.raw(), data.raw()));
    EXPECT_ANY_THROW(test::openURL(host.raw(), url.raw()));
    EXPECT_ANY_THROW(test::didReceive(host.raw(), response().native(), done));
  }
  EXPECT_EQ(device.countOfLine("📲 [INTERCEPTED] didRegisterForRemoteNotifications"), 2U);
  EXPECT_EQ(device.countOfLine(std::string("🔗 [INTERCEPTED] application:open:options: ") + link),
            2U);
  EXPECT_EQ(device.entries("event").size(), 2U);
  EXPECT_EQ(completions, 0);
  EXPECT_TRUE(device.errorLines().empty());
}

}  // namespace
