// Playing a scenario in a process of its own.

#pragma once

#include <optional>
#include <string>

#include "Simulator/Scenario/Scenario.h"
#include "Simulator/Timeline/Timeline.h"

namespace sim {

// How the process of a scenario ended, if not well.
using Death = std::string;

// Hands over each entry of the timeline as it comes, also those before a death. Call it while the
// calling process has a single thread.
std::optional<Death> playInProcess(const Scenario& scenario, const Timeline::Sink& sink);

}  // namespace sim
