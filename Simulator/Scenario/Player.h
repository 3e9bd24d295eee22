// Plays a scenario on the simulated device, in this process. What happens goes to the timeline.

#pragma once

#include "Simulator/Scenario/Scenario.h"

namespace sim {

// Once in a process: the module's state, like the classes of the runtime, is the process's.
void play(const Scenario& scenario);

}  // namespace sim
