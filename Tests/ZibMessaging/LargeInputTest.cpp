// Payloads and links at the size limits of what a sender might try.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "Tests/Support/Delegates.h"
#include "Tests/Support/Device.h"
#include "Tests/Support/Host.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibSwizzleManager.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace {

using test::Device;
using zib::Object;
using zib::Value;
using zib::ValueMap;

constexpr std::size_t megabyte = 1U << 20U;

class ReadingDelegate final : public ZibMessagingDelegate {
 public:
  void zibMessagingDidReceiveNotification(ZibMessaging& /*messaging*/,
                                          const zib::Dictionary& userInfo) override {
    read = userInfo.values();
  }
  std::optional<zib::Result<ValueMap>> read;
};

int depthOf(const ValueMap& values) {
  int depth = 0;
  for (const Value* at = values.find("in"); at != nullptr; ++depth) {
    const auto* map = at->get<ValueMap>();
    at = map == nullptr ? nullptr : map->find("in");
  }
  return depth;
}

class DeepPayloadTest : public testing::Test {
 protected:
  // Whether the event is counted and the delegate told does not hang on the depth.
  void receive(int levels) {
    Value inner = "innermost";
    for (int level = 1; level < levels; ++level) {
      ValueMap outer;
      outer.append("in", std::move(inner));
      inner = std::move(outer);
    }
    ValueMap userInfo{{"club", "A"}};
    userInfo.append("in", std::move(inner));
    ZibMessaging::shared().setDelegate(delegate_);
    const Object notification = sim::usernotifications::makeNotification(userInfo);
    ZibMessaging::shared().willPresent(zib::Notification::retained(notification.raw()));
    ASSERT_EQ(device_.entries("event").size(), 1U);
    EXPECT_EQ(device_.entries("event").front().at("data").at("club"), "A");
    EXPECT_TRUE(device_.errorLines().empty());
    ASSERT_TRUE(delegate_->read);
  }

  Device device_;
  std::shared_ptr<ReadingDelegate> delegate_ = std::make_shared<ReadingDelegate>();
};

TEST_F(DeepPayloadTest, Of256LevelsIsReadable) {
  receive(256);
  ASSERT_TRUE(*delegate_->read);
  EXPECT_EQ(depthOf(**delegate_->read), 256);
}

TEST_F(DeepPayloadTest, OfAThousandLevelsIsCountedAndTellsWhyItIsNotRead) {
  receive(1000);
  ASSERT_FALSE(*delegate_->read);
  EXPECT_EQ(delegate_->read->error().description,
            "nested too deep at \"in\"; 256 levels are allowed");
}

TEST(LargeInputTest, APayloadOfAMegabyteIsDelivered) {
  const Device device;
  const std::string large(megabyte, 'x');
  const Object response = sim::usernotifications::makeResponse(
      {{"club", large}, {"url", "https://example.com/" + large}}, "tap");
  ZibMessaging::shared().didReceive(zib::NotificationResponse::retained(response.raw()));
  Device::drain();
  EXPECT_EQ(device.entries("event").front().at("data").at("club"), large);
  EXPECT_EQ(device.countOfLine("ZibDeepLinkHandler: URL open succeeded"), 1U);
  EXPECT_TRUE(device.errorLines().empty());
}

TEST(LargeInputTest, AThousandCampaignParametersAreOneLine) {
  const Device device;
  const Object host = test::makeHost("LargeInputHost", {});
  sim::uikit::setAppDelegate(host);
  ZibSwizzleManager::shared().setupAutoSwizzling();
  std::string url = "https://example.com/?other=1";
  std::string expected = "   📊 UTM parameters: [";
  constexpr int count = 1000;
  for (int index = 0; index < count; ++index) {
    const std::string name = "utm_" + std::to_string(count + index);
    url += "&" + name + "=old&" + name + "=v%20" + std::to_string(index);
    if (index > 0) expected += ", ";
    expected += "\"" + name + "\": \"v " + std::to_string(index) + "\"";
  }
  EXPECT_TRUE(test::openURL(host.raw(), zib::URL::parse(url)->native()));
  EXPECT_EQ(device.countOfLine(expected + "]"), 1U);
}

TEST(LargeInputTest, ALongTokenIsShownShort) {
  const Device device;
  const std::string token(megabyte, 't');
  ZibMessaging::shared().setFCMToken(token);
  ZibMessaging::shared().setPushToken(zib::Bytes(megabyte, 0xAB));
  ZibMessaging::shared().setFCMToken(token);
  EXPECT_EQ(
      device.infoLines(),
      (std::vector<std::string>{
          "⚠️ Ignoring FCM token received before APNS registration: tttttttttttttttttttt...",
          "📱 APNS token registered: abababababababababab...",
          "   ℹ️ APNS registered, waiting for fresh FCM token from Firebase...",
          "📲 FCM token received (post-APNS): tttttttttttttttttttt..."}));
  EXPECT_EQ(device.entries("core").front().at("token"), token);
}

}  // namespace
