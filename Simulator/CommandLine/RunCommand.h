// zibsim run: plays scenarios and says what happened and what was expected.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace sim {

struct RunOptions {
  std::string format = "timeline";
  std::string output;
  std::string junit;
  std::size_t jobs = 0;  // as many as there are cores
  bool isStrict = false;
  std::vector<std::string> files;
};

// Gives the exit status. Throws UsageError, before anything is played.
int runScenarios(const RunOptions& options);

}  // namespace sim
