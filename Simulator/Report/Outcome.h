// What became of one scenario of a run.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Simulator/Timeline/Timeline.h"

namespace sim {

struct Outcome {
  // The file as it was named, or "-".
  std::string file;
  std::string name;
  std::vector<Json> steps;
  Json expectations = Json::array();
  std::vector<Json> timeline = {};
  // What was not met, in words.
  std::vector<std::string> unmet = {};
  std::optional<std::string> death = {};
  double seconds = 0;

  [[nodiscard]] bool hasPassed() const { return unmet.empty() && !death; }
};

// "1 passed, 2 failed: a.json ("tap"), b.json ("link")".
std::string tallyOf(const std::vector<Outcome>& outcomes);

// Of a scenario whose process died: how, and the last entries before that.
std::string describeDeath(const Outcome& outcome);

}  // namespace sim
