// What is left to happen when the module's instances, or the host's delegate, are gone.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Tests/Support/Device.h"
#include "Tests/Support/Host.h"
#include "Tests/Support/RecordingMessagingDelegate.h"
#include "Tests/Support/TestSeam.h"
#include "ZibPlatform/Foundation/Data.h"

namespace {

using test::Device;
using test::RecordingMessagingDelegate;
using Lines = std::vector<std::string>;
using Values = std::vector<sim::Json>;

class InstanceGoneTest : public testing::Test {
 protected:
  Device device_;
};

TEST_F(InstanceGoneTest, AnAnswerIsStoredAndTheDeviceTokenRequestedAllTheSame) {
  const auto delegate = std::make_shared<RecordingMessagingDelegate>();
  ZibMessaging::shared().setDelegate(delegate);
  ZibMessaging::shared().registerForPush(Device::application());
  ZibTestSeam::replaceMessaging();
  ZibMessaging::shared().setDelegate(delegate);
  device_.forget();
  ASSERT_TRUE(sim::usernotifications::answerOldestRequest({true, std::nullopt}));
  EXPECT_TRUE(device_.entries("storage").empty());
  Device::drain();
  EXPECT_EQ(device_.fields("storage", "operation"), Values{"savePushPermission"});
  EXPECT_EQ(device_.fields("storage", "value"), Values{true});
  EXPECT_EQ(device_.infoLines(), Lines{"Push notification authorization: granted"});
  EXPECT_EQ(device_.fields("system", "operation"), Values{"registerForRemoteNotifications"});
  EXPECT_FALSE(ZibMessaging::shared().isPushEnabled());
  EXPECT_TRUE(device_.entries("delegate").empty());
}

TEST_F(InstanceGoneTest, ADenialIsStoredAllTheSame) {
  ZibMessaging::shared().registerForPush(Device::application());
  ZibTestSeam::replaceMessaging();
  device_.forget();
  ASSERT_TRUE(sim::usernotifications::answerOldestRequest({false, std::nullopt}));
  Device::drain();
  EXPECT_EQ(device_.fields("storage", "value"), Values{false});
  EXPECT_EQ(device_.infoLines(), Lines{"Push notification authorization: denied"});
  EXPECT_TRUE(device_.entries("system").empty());
}

TEST_F(InstanceGoneTest, AnErrorIsReportedToTheLoggerOnly) {
  const auto delegate = std::make_shared<RecordingMessagingDelegate>();
  ZibMessaging::shared().setDelegate(delegate);
  ZibMessaging::shared().registerForPush(Device::application());
  ZibTestSeam::replaceMessaging();
  ZibMessaging::shared().setDelegate(delegate);
  device_.forget();
  ASSERT_TRUE(sim::usernotifications::answerOldestRequest({true, zib::Error{"d", 7, "t", {}}}));
  Device::drain();
  EXPECT_EQ(device_.errorLines(), Lines{"Push authorization error"});
  EXPECT_EQ(device_.entries("log").front().at("error").at("code"), 7);
  EXPECT_TRUE(device_.entries("delegate").empty());
  EXPECT_TRUE(device_.entries("storage").empty());
}

TEST_F(InstanceGoneTest, TheRetriesOfTheSwizzleManagerDoNothing) {
  sim::firebase::set({});
  ZibSwizzleManager::shared().setupAutoSwizzling();
  EXPECT_EQ(
      device_.countOfLine("ℹ️ No UNUserNotificationCenterDelegate set yet - will check again"),
      1U);
  EXPECT_EQ(device_.countOfLine("ℹ️ No connected scenes yet - will check again shortly"), 1U);
  EXPECT_EQ(device_.countOfLine("ℹ️ No Firebase MessagingDelegate set yet - will retry"), 1U);
  ZibTestSeam::replaceSwizzleManager();
  test::useForEverything(test::makeHost("InstanceGoneHost", test::everyHostMethod));
  device_.forget();
  Device::advance(5);
  EXPECT_TRUE(device_.entries("log").empty());
}

TEST_F(InstanceGoneTest, TheRetryOfTheFirebaseHookupDoesNothing) {
  ZibMessaging::shared().configure(Device::application());
  ZibTestSeam::replaceMessaging();
  sim::firebase::set({});
  device_.forget();
  Device::advance(0.2);
  EXPECT_TRUE(device_.entries("log").empty());
  EXPECT_EQ(sim::firebase::delegate(), nullptr);
}

TEST_F(InstanceGoneTest, AReleasedDelegateIsNotCalledAndLeavesNoLine) {
  auto delegate = std::make_shared<RecordingMessagingDelegate>();
  const std::weak_ptr<RecordingMessagingDelegate> watched = delegate;
  ZibMessaging& messaging = ZibMessaging::shared();
  messaging.setDelegate(delegate);
  EXPECT_EQ(messaging.delegate(), delegate);
  messaging.setPushToken(zib::Bytes{1});
  messaging.setFCMToken("first");
  EXPECT_EQ(device_.entries("delegate").size(), 1U);
  delegate.reset();
  EXPECT_TRUE(watched.expired()) << "the module keeps the host's delegate alive";
  EXPECT_EQ(messaging.delegate(), nullptr);
  device_.forget();
  messaging.setFCMToken("second");
  messaging.didFailToRegisterForRemoteNotifications({"d", 1, "t", {}});
  EXPECT_TRUE(device_.entries("delegate").empty());
  EXPECT_EQ(device_.infoLines(), Lines{"📲 FCM token received (post-APNS): second..."});
  EXPECT_EQ(device_.errorLines(), Lines{"Failed to register for push"});
}

// A delegate that lets itself go while it is called lives to the end of that call.
TEST_F(InstanceGoneTest, ADelegateMayBeReleasedWhileItIsCalled) {
  class LettingGo final : public ZibMessagingDelegate {
   public:
    explicit LettingGo(std::shared_ptr<LettingGo>& owner) : owner_(owner) {}
    void zibMessagingDidReceiveToken(ZibMessaging&, std::string_view token) override {
      owner_.reset();
      token_ = token;
    }

   private:
    std::shared_ptr<LettingGo>& owner_;
    std::string token_;
  };
  std::shared_ptr<LettingGo> owner;
  owner = std::make_shared<LettingGo>(owner);
  ZibMessaging::shared().setDelegate(owner);
  ZibMessaging::shared().setPushToken(zib::Bytes{1});
  ZibMessaging::shared().setFCMToken("a token that is too long for a string without memory");
  EXPECT_EQ(owner, nullptr);
  EXPECT_TRUE(device_.errorLines().empty());
}

// Once the push is known to be on, the flow ends without a word, and never completes.
TEST_F(InstanceGoneTest, AConfigurePushFlowEndsInSilenceAfterItsFetch) {
  sim::Reply configuration;
  configuration.body =
      R"({"ios_config_toggle": true, "ios_private_key_url": "https://config.example/plist"})";
  device_.connectTo({{"config.example", {{"/push.json", configuration}}}});
  int called = 0;
  ZibPushConfig::shared().configurePush(
      Device::application(), "https://config.example/push.json",
      [&](const zib::Dictionary&) { ++called; }, [&](bool) { ++called; });
  ZibTestSeam::replacePushConfig();
  Device::drain();
  EXPECT_EQ(device_.infoLines(),
            (Lines{"Fetching push configuration from: https://config.example/push.json",
                   "Push config: enabled=true"}));
  EXPECT_TRUE(device_.errorLines().empty());
  EXPECT_EQ(device_.entries("http").size(), 1U);
  EXPECT_EQ(called, 0);
}

}  // namespace
