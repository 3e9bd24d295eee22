// Whether a timeline is what the scenario expects.

#pragma once

#include <string>
#include <vector>

#include "Simulator/Timeline/Timeline.h"

namespace sim {

// One message for each expectation that is not met, of several lines: the item, and the entries
// that come nearest to it.
std::vector<std::string> unmetExpectations(const Json& expectations,
                                           const std::vector<Json>& timeline);

// One message for each problem, which a strict run does not allow.
std::vector<std::string> problems(const std::vector<Json>& timeline);

}  // namespace sim
