// The table of entries misses nothing that a timeline has: whatever was played can be expected.

#include "Simulator/Scenario/EntryKinds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Simulator/Scenario/PlayInProcess.h"
#include "Simulator/Scenario/Reader.h"
#include "ZibMessaging/Private/NotificationEvent.h"

namespace {

using sim::Json;
namespace fs = std::filesystem;

std::string complaintAboutExpecting(const Json& entry) {
  try {
    const Json scenario = {{"steps", Json::array()}, {"expect", {entry}}};
    static_cast<void>(sim::readScenario(scenario.dump(), ""));
  } catch (const sim::ScenarioError& error) {
    return error.what();
  }
  return {};
}

std::vector<Json> timelineOf(const fs::path& path) {
  std::ifstream stream(path);
  std::ostringstream text;
  text << stream.rdbuf();
  std::vector<Json> timeline;
  static_cast<void>(sim::playInProcess(sim::readScenario(text.str(), "", path.parent_path()),
                                       [&](const Json& entry) { timeline.push_back(entry); }));
  return timeline;
}

// Each room of the tree has its own share, so that no case takes long.
class EntryKindsTest : public testing::TestWithParam<std::string> {};

TEST_P(EntryKindsTest, TakeEveryEntryOfAPlayedScenario) {
  std::size_t count = 0;
  for (const fs::directory_entry& file :
       fs::directory_iterator(fs::path(ZIBSIM_SCENARIOS) / GetParam())) {
    if (file.path().extension() != ".json") continue;
    for (const Json& entry : timelineOf(file.path())) {
      ++count;
      EXPECT_EQ(complaintAboutExpecting(entry), "") << file.path() << ": " << entry.dump();
    }
  }
  EXPECT_GT(count, 0U);
}

std::vector<std::string> rooms() {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(ZIBSIM_SCENARIOS)) {
    if (entry.is_directory()) names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

INSTANTIATE_TEST_SUITE_P(Room, EntryKindsTest, testing::ValuesIn(rooms()), [](const auto& room) {
  std::string name = room.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

TEST(EntryKindsOfEventsTest, KnowTheFieldsOfAnEvent) {
  Json data = Json::object();
  for (const zib::NotificationField& field : zib::notificationFields) {
    data[std::string(field.key)] = nullptr;
  }
  EXPECT_EQ(complaintAboutExpecting({{"kind", "event"}, {"data", data}}), "");
}

}  // namespace
