// Whatever the system, or a host that plays the system, hands to the module: never a crash, the
// completion once, and the host's own method as often as it was called.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Simulator/ObjectiveC/StandIn.h"
#include "Tests/Support/Delegates.h"
#include "Tests/Support/Device.h"
#include "Tests/Support/Host.h"
#include "Tests/Support/RowName.h"
#include "Tests/Support/TestSeam.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibSwizzleManager.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace {

using test::Device;
using zib::Object;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;
using Lines = std::vector<std::string>;

// A host whose methods do nothing but count, since what they get may be anything.
struct Counting {
  static inline int calls = 0;

  static void two(id, SEL, id, id) { ++calls; }
  static BOOL open(id, SEL, id, id, id) {
    ++calls;
    return 0;
  }
  static void present(id, SEL, id, id, zib::BlockLayout* completion) {
    ++calls;
    zib::Block<void(UInteger)>::call(completion, 4);
  }
  static void respond(id, SEL, id, id, zib::BlockLayout* completion) {
    ++calls;
    zib::Block<void()>::call(completion);
  }
  static Object make() {
    zib::ClassBuilder builder("InterceptorInputHost", zib::classNamed<"NSObject">());
    builder.method("application:didRegisterForRemoteNotificationsWithDeviceToken:", &two)
        .method("application:didFailToRegisterForRemoteNotificationsWithError:", &two)
        .method("application:openURL:options:", &open)
        .method("scene:openURLContexts:", &two)
        .method("userNotificationCenter:willPresentNotification:withCompletionHandler:", &present)
        .method("userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
                &respond)
        .method("messaging:didReceiveRegistrationToken:", &two);
    return Object::adopted(zib::send<id>(builder.registerClass().object(), zib::selector<"new">()));
  }
};

// Objects of every kind but the expected one, and nil.
std::vector<Object> strangers() {
  return {Object(),
          zib::makeString("text"),
          zib::objectFrom(zib::Value(5)),
          zib::objectFrom(zib::Value()),
          zib::objectFrom(zib::Value(zib::Array{1, "two"})),
          zib::objectFrom(zib::ValueMap{{"url", "https://example.com/"}}),
          zib::makeData(zib::Bytes{1, 2}),
          Object::retained(zib::URL::parse("https://example.com/")->native()),
          Object::retained(zib::classNamed<"NSString">().object()),
          Object::adopted(
              zib::send<id>(zib::classNamed<"NSProxy">().object(), zib::selector<"alloc">()))};
}

enum class HostKind { withMethods, withoutMethods };

const char* nameOf(HostKind kind) {
  return kind == HostKind::withMethods ? "WithMethods" : "WithoutMethods";
}

class InterceptorInputTest : public testing::TestWithParam<HostKind> {
 protected:
  InterceptorInputTest() {
    test::useForEverything(host_);
    ZibSwizzleManager::shared().setupAutoSwizzling();
    ZibMessaging::shared().setPushToken(zib::Bytes{1});
    device_.forget();
  }
  static int calls(int expected) { return GetParam() == HostKind::withMethods ? expected : 0; }
  [[nodiscard]] id host() const { return host_.raw(); }
  zib::Block<void()> done() {
    return zib::Block<void()>::from([this] { ++completions_; });
  }
  zib::Block<void(UInteger)> chosen() {
    return zib::Block<void(UInteger)>::from([this](UInteger) { ++completions_; });
  }

  Device device_;
  Object host_ = GetParam() == HostKind::withMethods
                     ? Counting::make()
                     : test::makeHost("InterceptorInputEmptyHost", {});
  int completions_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Host, InterceptorInputTest,
                         testing::Values(HostKind::withMethods, HostKind::withoutMethods),
                         test::rowName);

TEST_P(InterceptorInputTest, ArgumentsOfAnyKindNeverCrash) {
  const auto all = strangers();
  for (const Object& stranger : all) {
    test::deviceToken(host(), stranger.raw());
    test::registrationFailure(host(), stranger.raw());
    test::openURL(host(), stranger.raw(), stranger.raw());
    test::openURLContexts(host(), stranger.raw(), stranger.raw());
    test::willPresent(host(), stranger.raw(), chosen());
    test::didReceive(host(), stranger.raw(), done());
    test::fcmToken(host(), stranger.raw());
  }
  Device::drain();
  const int count = static_cast<int>(all.size());
  // All but the set of contexts that is nil, and so empty.
  EXPECT_EQ(Counting::calls, calls(7 * count - 1));
  EXPECT_EQ(completions_, 2 * count);
}

TEST_P(InterceptorInputTest, NilArguments) {
  test::deviceToken(host(), nullptr);
  test::registrationFailure(host(), nullptr);
  test::openURL(host(), nullptr, nullptr);
  test::openURLContexts(host(), nullptr, nullptr);
  test::fcmToken(host(), nullptr);
  EXPECT_EQ(Counting::calls, calls(4));
  EXPECT_EQ(device_.infoLines(),
            (Lines{"📲 [INTERCEPTED] didRegisterForRemoteNotifications",
                   "❌ [INTERCEPTED] didFailToRegisterForRemoteNotifications",
                   "🔗 [INTERCEPTED] application:open:options: ",
                   "🔥 [INTERCEPTED] Firebase MessagingDelegate - FCM token: nil..."}));
  EXPECT_EQ(device_.errorLines(), Lines{"Failed to register for push"});
  EXPECT_EQ(ZibMessaging::shared().fcmToken(), std::nullopt);
}

TEST_P(InterceptorInputTest, ADeviceTokenThatIsNoDataReachesOnlyTheHost) {
  const auto all = strangers();
  for (const Object& stranger : all) {
    if (!zib::bytesOf(stranger.raw()).empty()) continue;
    test::deviceToken(host(), stranger.raw());
    EXPECT_EQ(device_.infoLines(), Lines{"📲 [INTERCEPTED] didRegisterForRemoteNotifications"});
    EXPECT_EQ(ZibMessaging::shared().apnsToken(), zib::Bytes{1});
    device_.forget();
  }
  EXPECT_EQ(Counting::calls, calls(static_cast<int>(all.size()) - 1));
}

TEST_P(InterceptorInputTest, ADeviceTokenWithoutBytesIsATokenAllTheSame) {
  test::deviceToken(host(), zib::makeData({}).raw());
  EXPECT_EQ(device_.countOfLine("📱 APNS token registered: ..."), 1U);
  EXPECT_EQ(ZibMessaging::shared().apnsToken(), zib::Bytes());
}

TEST_P(InterceptorInputTest, ADeviceTokenThatIsNoneLetsNoTokenOfFirebaseIn) {
  ZibTestSeam::replaceMessaging();
  test::deviceToken(host(), nullptr);
  test::fcmToken(host(), zib::makeString("token").raw());
  EXPECT_EQ(ZibMessaging::shared().fcmToken(), std::nullopt);
}

TEST_P(InterceptorInputTest, NilCompletionsAreNotCalled) {
  const auto noChoice = zib::Block<void(UInteger)>::copied(nullptr);
  const auto nothing = zib::Block<void()>::copied(nullptr);
  test::willPresent(host(), sim::usernotifications::makeNotification({}).raw(), noChoice);
  test::didReceive(host(), sim::usernotifications::makeResponse({}, "tap").raw(), nothing);
  EXPECT_EQ(Counting::calls, calls(2));
  EXPECT_EQ(device_.entries("event").size(), 2U);
  for (const bool enabled : {true, false}) {
    ZibSwizzleManager::shared().setSwizzlingEnabled(enabled);
    test::willPresent(ZibMessaging::runtimeObject(), nullptr, noChoice);
    test::didReceive(ZibMessaging::runtimeObject(), nullptr, nothing);
  }
}

TEST_P(InterceptorInputTest, ANotificationWithoutItsPartsIsCountedAsAnEmptyOne) {
  test::willPresent(host(), nullptr, chosen());
  const Object bare = sim::makeStandIn(zib::Class::named("UNNotification"));
  test::willPresent(host(), bare.raw(), chosen());
  test::didReceive(host(), nullptr, done());
  const Object response = sim::makeStandIn(zib::Class::named("UNNotificationResponse"));
  test::didReceive(host(), response.raw(), done());
  EXPECT_EQ(completions_, 4);
  EXPECT_TRUE(device_.errorLines().empty());
  EXPECT_EQ(device_.entries("event").size(), 4U);
  for (const sim::Json& entry : device_.entries("event")) {
    EXPECT_EQ(entry.at("data").size(), 14U);
    EXPECT_TRUE(entry.at("data").at("club").is_null());
  }
}

TEST_P(InterceptorInputTest, AUserInfoThatIsNoDictionaryIsAnEmptyOne) {
  for (const Object& userInfo : strangers()) {
    const Object response = sim::usernotifications::makeResponse({}, "tap");
    const id notification = zib::send<id>(response.raw(), zib::selector<"notification">());
    const id request = zib::send<id>(notification, zib::selector<"request">());
    const id content = zib::send<id>(request, zib::selector<"content">());
    const bool isDictionary = !zib::Dictionary::retained(userInfo.raw()).empty();
    sim::setProperty(content, "userInfo", userInfo);
    test::willPresent(host(), notification, chosen());
    if (!isDictionary) test::didReceive(host(), response.raw(), done());
  }
  EXPECT_TRUE(device_.errorLines().empty());
  EXPECT_EQ(device_.entries("event").size(), 2 * strangers().size() - 1);
  for (const sim::Json& entry : device_.entries("event")) EXPECT_EQ(entry.at("data").size(), 14U);
}

TEST_P(InterceptorInputTest, AContextWithoutAURLReachesOnlyTheHost) {
  const Object contexts = sim::uikit::makeURLContexts({Object()});
  test::openURLContexts(host(), nullptr, contexts.raw());
  EXPECT_EQ(Counting::calls, calls(1));
  EXPECT_TRUE(device_.entries("log").empty());
}

// The completion reaches the system exactly as often as the host calls it.
struct Repeating {
  static inline int times = 0;

  static void present(id, SEL, id, id, zib::BlockLayout* completion) {
    for (int time = 0; time < times; ++time) {
      zib::Block<void(UInteger)>::call(completion, static_cast<UInteger>(time));
    }
  }
  static void respond(id, SEL, id, id, zib::BlockLayout* completion) {
    for (int time = 0; time < times; ++time) zib::Block<void()>::call(completion);
  }
};

TEST(InterceptorCompletionTest, IsPassedOnAsOftenAsTheHostCallsIt) {
  const Device device;
  const Object host = Object::adopted(zib::send<id>(
      zib::ClassBuilder("InterceptorRepeatingHost", zib::classNamed<"NSObject">())
          .method("userNotificationCenter:willPresentNotification:withCompletionHandler:",
                  &Repeating::present)
          .method("userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
                  &Repeating::respond)
          .registerClass()
          .object(),
      zib::selector<"new">()));
  sim::usernotifications::setDelegate(host);
  ZibSwizzleManager::shared().setupAutoSwizzling();
  for (const int times : {0, 1, 3}) {
    Repeating::times = times;
    std::vector<UInteger> options;
    int completions = 0;
    test::willPresent(host.raw(), nullptr, zib::Block<void(UInteger)>::from([&](UInteger chosen) {
                        options.push_back(chosen);
                      }));
    test::didReceive(host.raw(), nullptr, zib::Block<void()>::from([&] { ++completions; }));
    EXPECT_EQ(completions, times);
    ASSERT_EQ(options.size(), static_cast<std::size_t>(times));
    for (std::size_t time = 0; time < options.size(); ++time) EXPECT_EQ(options[time], time);
  }
}

// The host may complete long after its method has returned.
struct Keeping {
  static inline std::optional<zib::Block<void(UInteger)>> kept;

  static void present(id, SEL, id, id, zib::BlockLayout* completion) {
    kept = zib::Block<void(UInteger)>::copied(completion);
  }
};

TEST(InterceptorCompletionTest, MayBeKeptByTheHostAndLetsGoOfTheSystems) {
  const Device device;
  const Object host = Object::adopted(zib::send<id>(
      zib::ClassBuilder("InterceptorKeepingHost", zib::classNamed<"NSObject">())
          .method("userNotificationCenter:willPresentNotification:withCompletionHandler:",
                  &Keeping::present)
          .registerClass()
          .object(),
      zib::selector<"new">()));
  sim::usernotifications::setDelegate(host);
  ZibSwizzleManager::shared().setupAutoSwizzling();
  const auto options = std::make_shared<UInteger>(0);
  test::willPresent(
      host.raw(), nullptr,
      zib::Block<void(UInteger)>::from([options](UInteger chosen) { *options = chosen; }));
  EXPECT_EQ(*options, 0U);
  EXPECT_EQ(options.use_count(), 2);
  (*Keeping::kept)(27);
  EXPECT_EQ(*options, 27U);
  Keeping::kept.reset();
  EXPECT_EQ(options.use_count(), 1);
}

}  // namespace
