// zibsim diff: whether two timelines mean the same.

#pragma once

#include <string>

namespace sim {

struct DiffOptions {
  std::string first;
  std::string second;
};

// Gives the exit status. Throws UsageError.
int compareTimelines(const DiffOptions& options);

}  // namespace sim
