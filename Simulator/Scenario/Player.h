// Plays a scenario on the simulated device, in this process. What happens goes to the timeline.

#pragma once

#include <filesystem>

#include "Simulator/Scenario/Scenario.h"

namespace sim {

// Once in a process: the module's state, like the classes of the runtime, is the process's.
// `documents` is the folder that stands for the Documents directory; empty where there is none.
void play(const Scenario& scenario, const std::filesystem::path& documents);

}  // namespace sim
