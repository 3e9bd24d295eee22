// The core library of the simulated app: it records what the module asks of it.

#pragma once

#include <optional>
#include <string>

#include "ZibCoreBoundary/ZibConfig.h"

namespace sim {

// Installs logger, core and storage. Once in a process.
void installRecordingCore();

// What the core knows; any time, any thread.
void setCoreConfig(std::optional<ZibConfig> config);
void setPushConfigEndpoint(std::optional<std::string> endpoint);

}  // namespace sim
