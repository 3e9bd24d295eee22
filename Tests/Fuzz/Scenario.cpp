// A scenario file of any kind: it is read, or refused in one line that says where.

#include <algorithm>
#include <string>

#include "Simulator/Scenario/Reader.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "Tests/Fuzz/Target.h"

void fuzz::prepare() {}

void fuzz::run(std::string_view input) {
  try {
    const sim::Scenario scenario = sim::readScenario(input, "fuzz");
    require(!scenario.steps.empty() || input.find("steps") != std::string_view::npos,
            "a scenario has steps");
  } catch (const sim::ScenarioError& error) {
    const std::string message = error.what();
    require(message.starts_with('/') || message.starts_with("(root)"), "a mistake has a place");
    require(message.find("; allowed: ") != std::string::npos, "a mistake says what is allowed");
    require(message.find('\n') == std::string::npos, "a mistake is one line");
  }
}
