// zibsim inspect: what one push payload reports and opens.

#pragma once

#include <string>

namespace sim {

struct InspectOptions {
  std::string eventType;
  std::string format = "text";
  std::string file;
};

// Gives the exit status. Throws UsageError.
int inspectPayload(const InspectOptions& options);

}  // namespace sim
