// The scenarios that a command line names.

#pragma once

#include <string>
#include <vector>

#include "Simulator/Scenario/Scenario.h"

namespace sim {

struct ScenarioFile {
  std::string file;
  Scenario scenario;
};

// Files, folders (their .json files, in order of name) and standard input. Throws UsageError, which
// names everything that is wrong with any of them, a line each.
std::vector<ScenarioFile> readScenarioFiles(const std::vector<std::string>& names);

}  // namespace sim
