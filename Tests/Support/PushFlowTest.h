// What the tests of configure-push flows share: how a flow ended for the host, and the bodies that
// servers answer with.

#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Tests/Support/PushFlow.h"

namespace test {

class PushFlowTest : public testing::Test {
 protected:
  // Runs the flow with that answer to one of its requests.
  Story storyOf(Request request, std::string body, int status = 200) {
    flow_.serve(request, answer(std::move(body), status));
    return flow_.run();
  }
  void expectNothingHandedOver() {
    EXPECT_TRUE(flow_.handled().empty());
    EXPECT_FALSE(std::filesystem::exists(flow_.storedFile()));
  }
  void expectPropertyListHandedOver() {
    EXPECT_EQ(flow_.handled(), std::vector{propertyListValues()});
    EXPECT_EQ(flow_.stored(), propertyList());
  }

  PushFlow flow_;
};

// A row of bodies that are alike in what is wrong, or right, with them.
struct Bodies {
  const char* name;
  std::vector<std::string> bodies;
};

// Every start of the whole, from the shortest length on.
inline std::vector<std::string> truncationsOf(const std::string& whole, std::size_t shortest) {
  std::vector<std::string> bodies;
  for (std::size_t length = shortest; length < whole.size(); ++length) {
    bodies.push_back(whole.substr(0, length));
  }
  return bodies;
}

// The start of a body, for the trace of a failure.
inline std::string startOf(const std::string& body) {
  constexpr std::size_t shown = 80;
  return testing::PrintToString(body.substr(0, shown));
}

}  // namespace test
