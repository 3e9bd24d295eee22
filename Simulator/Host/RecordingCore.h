// The core library of the simulated app: it records what the module asks of it.

#pragma once

#include <optional>
#include <string>

#include "Simulator/Json/Json.h"
#include "ZibC/zib.h"

namespace sim {

struct CoreConfig {
  bool autoSwizzlingEnabled = true;
};

// Installs the core. Once in a process.
void installRecordingCore();

// What the core knows; any time, any thread.
void setCoreConfig(std::optional<CoreConfig> config);
void setPushConfigEndpoint(std::optional<std::string> endpoint);

// An error as entries have it.
Json jsonFrom(const zib_error& error);

}  // namespace sim
