// The file that a recording leaves, at any time.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "Recorder/zib_record.h"
#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Simulator/Scenario/Reader.h"
#include "Tests/Support/Device.h"
#include "ZibMessaging/ZibMessaging.h"

namespace {

using sim::Json;

class RecordTest : public testing::Test {
 protected:
  RecordTest() {
    std::string name = std::filesystem::temp_directory_path() / "zib-record-XXXXXX";
    folder_ = ::mkdtemp(name.data());
  }
  ~RecordTest() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] std::string file() const { return folder_ / "recording.json"; }

  // What stands there now, which is a scenario.
  [[nodiscard]] Json recorded() const {
    std::ifstream stream(file(), std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    EXPECT_NO_THROW(static_cast<void>(sim::readScenario(text, "")));
    return Json::parse(text);
  }

  test::Device device_;

 private:
  std::filesystem::path folder_;
};

TEST_F(RecordTest, BeginsOnceAndOnlyWhereTheFileCanBeWritten) {
  EXPECT_FALSE(zib_record(nullptr));
  EXPECT_FALSE(zib_record("/no/such/folder/recording.json"));
  EXPECT_TRUE(zib_record(file().c_str()));
  EXPECT_FALSE(zib_record(file().c_str()));
  EXPECT_FALSE(zib_record_with_texts(file().c_str()));
  EXPECT_EQ(recorded()["steps"], Json::array());
}

TEST_F(RecordTest, HoldsAScenarioAfterEachCall) {
  ASSERT_TRUE(zib_record_with_texts(file().c_str()));
  auto& messaging = ZibMessaging::shared();
  messaging.configure(test::Device::application());
  EXPECT_EQ(recorded()["steps"], (Json{{{"do", "configure"}}}));
  test::Device::advance(2);
  messaging.setFCMToken("token-1");
  const Json steps = recorded()["steps"];
  ASSERT_GE(steps.size(), 3U) << steps;
  EXPECT_EQ(
      steps.back(),
      (Json{{"do", "call"}, {"operation", "setFCMToken"}, {"arguments", {{"token", "token-1"}}}}));
  double seconds = 0;
  for (const Json& step : steps) seconds += step.value("seconds", 0.0);
  EXPECT_EQ(seconds, 2);
}

TEST_F(RecordTest, TellsNothingUnlessAsked) {
  ASSERT_TRUE(zib_record(file().c_str()));
  ZibMessaging::shared().setFCMToken("Secret-1");
  EXPECT_EQ(recorded()["steps"].back()["arguments"]["token"], "Xaaxax-0");
}

TEST_F(RecordTest, KeepsTokensApart) {
  ASSERT_TRUE(zib_record(file().c_str()));
  ZibMessaging::shared().setFCMToken("Secret-1");
  ZibMessaging::shared().setFCMToken("Secret-2");
  EXPECT_EQ(recorded()["steps"].back()["arguments"]["token"], "Xaaxax-1");
}

TEST_F(RecordTest, TellsWhatTheHostCallsInTheMidstOfACall) {
  class Delegate : public ZibMessagingDelegate {
   public:
    void zibMessagingDidReceiveToken(ZibMessaging& messaging, std::string_view) override {
      messaging.setupAsNotificationDelegate();
    }
  };
  const auto delegate = std::make_shared<Delegate>();
  auto& messaging = ZibMessaging::shared();
  messaging.setDelegate(delegate);
  ASSERT_TRUE(zib_record_with_texts(file().c_str()));
  messaging.didRegisterForRemoteNotifications(zib::Bytes{1, 2});
  messaging.didReceiveRegistrationToken("token-1");
  std::vector<Json> operations;
  const Json steps = recorded()["steps"];
  for (const Json& step : steps) operations.push_back(step["operation"]);
  EXPECT_EQ(operations,
            (std::vector<Json>{"didRegisterForRemoteNotifications", "didReceiveRegistrationToken",
                               "setupAsNotificationDelegate"}));
}

}  // namespace
