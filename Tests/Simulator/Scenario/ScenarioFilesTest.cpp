// The scenarios in Tests/Scenarios as a collection: where they stand, and what they are called.
// Not for what they say: each is a test of its own.

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

const fs::path& folder() {
  static const fs::path path(ZIBSIM_SCENARIOS);
  return path;
}

// By path within the folder. What a scenario reads stands in a folder Files beside it.
const std::map<fs::path, Json>& scenarios() {
  static const std::map<fs::path, Json> all = [] {
    std::map<fs::path, Json> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder())) {
      const fs::path path = entry.path().lexically_relative(folder());
      const bool isRead = path.parent_path().filename() == "Files";
      if (entry.is_directory() || isRead || path.extension() != ".json") continue;
      std::ifstream stream(entry.path());
      found.emplace(path, Json::parse(stream));
    }
    return found;
  }();
  return all;
}

TEST(ScenarioFilesTest, StandInAFolderBySubject) {
  ASSERT_FALSE(scenarios().empty());
  for (const auto& [path, scenario] : scenarios()) {
    EXPECT_EQ(std::distance(path.begin(), path.end()), 2) << path << ": allowed: SUBJECT/NAME.json";
  }
}

TEST(ScenarioFilesTest, DoNotRepeatTheirFolderInTheirName) {
  for (const auto& [path, scenario] : scenarios()) {
    EXPECT_FALSE(path.filename().string().starts_with(path.parent_path().string() + "-")) << path;
  }
}

TEST(ScenarioFilesTest, HaveASentenceForATitle) {
  for (const auto& [path, scenario] : scenarios()) {
    const std::string title = scenario.value("name", "");
    ASSERT_FALSE(title.empty()) << path;
    const bool startsLikeOne = title.front() == '"' || std::isupper(title.front()) != 0;
    EXPECT_TRUE(startsLikeOne) << path << ": \"" << title << "\"; allowed: a capital first";
    EXPECT_FALSE(title.ends_with('.')) << path << ": \"" << title << "\"; allowed: no full stop";
  }
}

TEST(ScenarioFilesTest, HaveATitleOfTheirOwn) {
  std::map<std::string, fs::path> seen;
  for (const auto& [path, scenario] : scenarios()) {
    const auto [first, isNew] = seen.emplace(scenario.value("name", ""), path);
    EXPECT_TRUE(isNew) << path << " has the title of " << first->second;
  }
}

TEST(ScenarioFilesTest, LeaveUnexpectedProblemsToTheRun) {
  const Json needless = {{"absent", {{"kind", "problem"}}}};
  for (const auto& [path, scenario] : scenarios()) {
    for (const Json& item : scenario.value("expect", Json::array())) {
      EXPECT_NE(item, needless) << path << ": scenarios are run with --strict";
    }
  }
}

TEST(ScenarioFilesTest, ExpectOperationsThatTheDocumentationLists) {
  std::ifstream stream(ZIBSIM_DOCUMENTATION);
  const std::string page{std::istreambuf_iterator<char>(stream), {}};
  for (const auto& [path, scenario] : scenarios()) {
    for (const Json& item : scenario.value("expect", Json::array())) {
      const Json operation = item.value("operation", Json());
      if (!operation.is_string()) continue;
      EXPECT_NE(page.find(operation.dump()), std::string::npos) << path << ": " << operation;
    }
  }
}

TEST(ScenarioFilesTest, ExpectSomething) {
  for (const auto& [path, scenario] : scenarios()) {
    EXPECT_FALSE(scenario.value("expect", Json::array()).empty()) << path;
  }
}

}  // namespace
