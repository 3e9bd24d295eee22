// zibsim record: plays a scenario, and writes what the module was called with as another.

#pragma once

#include <string>

namespace sim {

struct RecordOptions {
  std::string output;
  bool hasTexts = false;
  std::string file;
};

// Gives the exit status. Throws UsageError, before anything is played.
int recordScenario(const RecordOptions& options);

}  // namespace sim
