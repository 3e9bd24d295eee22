// Two timelines compared by what they mean.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Json/Json.h"

namespace sim {

// What an entry says happened, whichever moment and step it happened in: without its time and the
// index of a step. Empty for entries that tell of no effect: log lines and steps.
std::string meaningOf(const Json& entry);

enum class Side { both, first, second };

struct ComparedLine {
  Side side = Side::both;
  std::string text;

  friend bool operator==(const ComparedLine&, const ComparedLine&) = default;
};

// The lines of both with as few as possible on one side alone.
std::vector<ComparedLine> compare(const std::vector<std::string>& first,
                                  const std::vector<std::string>& second);

}  // namespace sim
