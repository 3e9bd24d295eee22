// A process of unit tests that no app hosts: asking it for the notification centre would end it.

#include "HostTest.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/XCTest/XCTest.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPushConfig.h"

namespace hosts {
namespace {

class NoCenterTest : public HostTest {
 protected:
  NoCenterTest() {
    sim::xctest::install();
    sim::foundation::setMainBundleIdentifier(std::nullopt);
  }
};

TEST_F(NoCenterTest, ConfigureSaysSoInOneErrorLine) {
  ZibMessaging::shared().configure(Device::application());
  EXPECT_EQ(device_.errorLines(), Lines{"ZibMessaging: this process has no notification centre"});
  EXPECT_EQ(device_.countOfLine("ZibMessaging set as UNUserNotificationCenterDelegate"), 0U);
  EXPECT_EQ(sim::usernotifications::delegate(), nullptr);
}

TEST_F(NoCenterTest, ConfigurePushCompletesWithNo) {
  sim::Reply configuration;
  configuration.body =
      R"({"ios_config_toggle": true, "ios_private_key_url": "https://config.example/plist"})";
  sim::Reply plist;
  plist.body = R"(<?xml version="1.0"?><plist version="1.0"><dict/></plist>)";
  device_.connectTo({{"config.example", {{"/push.json", configuration}, {"/plist", plist}}}});
  std::vector<bool> completions;
  ZibPushConfig::shared().configurePush(
      Device::application(), "https://config.example/push.json", [](const zib::Dictionary&) {},
      [&](bool isRegistering) { completions.push_back(isRegistering); });
  Device::drain();
  EXPECT_EQ(completions, std::vector<bool>{false});
  EXPECT_EQ(device_.errorLines(),
            Lines{"ZibMessaging: this process has no notification centre, and no push"});
}

}  // namespace
}  // namespace hosts
