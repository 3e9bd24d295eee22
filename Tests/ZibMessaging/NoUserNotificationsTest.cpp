// An app that does not link UserNotifications, which the module only finds by name: what needs it
// is one error line, and the rest goes on.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Simulator/Device/Device.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Host/RecordingCore.h"
#include "Simulator/Network/Network.h"
#include "Simulator/Network/URLSession.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/UIKit/UIKit.h"
#include "Tests/Support/Delegates.h"
#include "Tests/Support/Host.h"
#include "ZibMessaging/ZibIntegrationReport.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Class.h"

namespace {

using Lines = std::vector<std::string>;

class NoUserNotificationsTest : public testing::Test {
 protected:
  NoUserNotificationsTest() {
    sim::foundation::setSystemVersion(17, 0);
    sim::foundation::install();
    sim::urlsession::install();
    sim::uikit::install(sim::uikit::ApplicationPresence::present, true);
    sim::installRecordingCore();
    sim::Timeline::shared().setSink([this](const sim::Json& entry) {
      if (entry.at("kind") != "log") return;
      const std::string level = entry.at("level");
      (level == "error" ? errors_ : infos_).push_back(entry.at("message"));
    });
  }
  ~NoUserNotificationsTest() override { sim::Timeline::shared().setSink({}); }

  static zib::Application application() {
    return zib::Application::retained(sim::uikit::application());
  }

  zib::AutoreleasePool pool_;
  Lines errors_;
  Lines infos_;
};

TEST_F(NoUserNotificationsTest, IsAProcessThatIsUsedHere) {
  EXPECT_FALSE(zib::Class::named("UNUserNotificationCenter"));
}

TEST_F(NoUserNotificationsTest, ConfigureSaysSoInOneErrorLineAndGoesOn) {
  const zib::Object delegate = test::makeHost("HostWithoutNotifications", {});
  sim::uikit::setAppDelegate(delegate);
  ZibMessaging::shared().setDelegateDiscovery(zib::DelegateDiscovery::continuous);
  ZibMessaging::shared().configure(application());
  sim::Device::advance(2);
  EXPECT_EQ(errors_, Lines{"ZibMessaging: this process has no notification centre"});
  for (const std::string& line : infos_) {
    EXPECT_EQ(line.find("set as UNUserNotificationCenterDelegate"), std::string::npos);
  }
  test::deviceToken(delegate.raw(), zib::makeData(zib::Bytes{0x8f, 0x3a}).raw());
  EXPECT_EQ(ZibMessaging::shared().apnsToken(), (zib::Bytes{0x8f, 0x3a}));
  EXPECT_EQ(zib::integrationReport().rows.at(4).remarks, Lines{"no notification delegate"});
  EXPECT_EQ(errors_.size(), 1U);
}

TEST_F(NoUserNotificationsTest, RegisteringSaysSoInOneErrorLine) {
  ZibMessaging::shared().registerForPush(application());
  ZibMessaging::shared().setupAsNotificationDelegate();
  sim::Device::settle();
  EXPECT_EQ(errors_, (Lines{"ZibMessaging: this process has no notification centre, and no push",
                            "ZibMessaging: this process has no notification centre"}));
  EXPECT_FALSE(ZibMessaging::shared().isPushEnabled());
}

TEST_F(NoUserNotificationsTest, ConfigurePushCompletesWithNo) {
  sim::Reply configuration;
  configuration.body =
      R"({"ios_config_toggle": true, "ios_private_key_url": "https://config.example/plist"})";
  sim::Reply plist;
  plist.body = R"(<?xml version="1.0"?><plist version="1.0"><dict/></plist>)";
  const auto network = std::make_shared<sim::Network>(
      sim::Sites{{"config.example", {{"/push.json", configuration}, {"/plist", plist}}}});
  sim::urlsession::setNetwork(network);
  std::vector<bool> completions;
  ZibPushConfig::shared().configurePush(
      application(), "https://config.example/push.json", [](const zib::Dictionary&) {},
      [&](bool isRegistering) { completions.push_back(isRegistering); });
  sim::Device::settle();
  EXPECT_EQ(completions, std::vector<bool>{false});
  ASSERT_FALSE(errors_.empty());
  EXPECT_EQ(errors_.back(), "ZibMessaging: this process has no notification centre, and no push");
}

}  // namespace
