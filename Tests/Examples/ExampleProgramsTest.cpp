// The examples as their readers run them: what they print is compared with what it should be.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "Tests/Support/RowName.h"

namespace {

std::string outputOf(const std::string& program) {
  std::FILE* const pipe = ::popen((std::string(EXAMPLES_PATH) + program).c_str(), "r");
  if (pipe == nullptr) return "could not be started";
  std::string output;
  std::array<char, 4096> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
    output.append(buffer.data(), count);
  }
  const int status = ::pclose(pipe);
  if (status != 0) output += "ended with status " + std::to_string(status) + '\n';
  return output;
}

// The lines that begin with one of the two.
std::string linesOf(const std::string& output, std::string_view one, std::string_view other) {
  std::istringstream lines(output);
  std::string result;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(one) || line.starts_with(other)) result += line + '\n';
  }
  return result;
}

std::string expectedOf(const std::string& name) {
  std::ifstream file(std::string(EXPECTED_PATH) + name + ".txt");
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

class ExampleProgramsTest : public testing::TestWithParam<std::string> {};

TEST_P(ExampleProgramsTest, PrintsWhatItShould) {
  EXPECT_EQ(outputOf("/" + GetParam()), expectedOf(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(All, ExampleProgramsTest,
                         testing::Values("ObjectiveCApp", "ManualObjectiveCApp", "CppApp"),
                         test::rowName);

TEST(UnintegratedHostTest, BehavesTheSameWithTheModuleLinkedInAndWithout) {
  const std::string alone = outputOf("/HostWithoutModule");
  EXPECT_NE(alone.find("NotificationDelegate has 2 methods, had 2"), std::string::npos) << alone;
  EXPECT_EQ(alone.find("CHANGED"), std::string::npos) << alone;
  EXPECT_EQ(outputOf("/HostWithIdleModule"), alone);
}

// What the integrated app's own methods do is what they do without the module.
TEST(UnintegratedHostTest, AppDoesTheSameWhenIntegrated) {
  const std::string alone = linesOf(outputOf("/HostWithoutModule"), "app ", "app ");
  EXPECT_FALSE(alone.empty());
  EXPECT_EQ(linesOf(outputOf("/ObjectiveCApp"), "app ", "app "), alone);
}

}  // namespace
