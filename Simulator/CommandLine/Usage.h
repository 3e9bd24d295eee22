// How a command ends, and what the caller has to mend.

#pragma once

#include <stdexcept>

namespace sim {

// Of several, the greatest counts.
enum ExitStatus { allAsExpected = 0, expectationNotMet = 1, wrongUsage = 2, processDied = 3 };

// Something about the command line or a file that is to be mended by the caller.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace sim
