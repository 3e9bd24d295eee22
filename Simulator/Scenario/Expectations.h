// Whether a timeline is what the scenario expects.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Simulator/Timeline/Timeline.h"

namespace sim {

// What became of one expectation.
struct Judgement {
  // Of several lines; empty where it is met.
  std::string miss;
  // Where in the timeline the entries stand that met it, or else those that come nearest.
  std::vector<std::size_t> entries;
};

// One for each expectation, in order.
std::vector<Judgement> judge(const Json& expectations, const std::vector<Json>& timeline);

// One message for each expectation that is not met, of several lines: the item, and the entries
// that come nearest to it.
std::vector<std::string> unmetExpectations(const Json& expectations,
                                           const std::vector<Json>& timeline);

// One message for each problem, which a strict run does not allow.
std::vector<std::string> problems(const std::vector<Json>& timeline);

}  // namespace sim
