#include "Simulator/Report/Outcome.h"

#include <algorithm>

namespace sim {

std::string tallyOf(const std::vector<Outcome>& outcomes) {
  const auto passed = std::count_if(outcomes.begin(), outcomes.end(),
                                    [](const Outcome& outcome) { return outcome.hasPassed(); });
  const auto failed = static_cast<std::ptrdiff_t>(outcomes.size()) - passed;
  std::string tally = std::to_string(passed) + " passed, " + std::to_string(failed) + " failed";
  const char* separator = ": ";
  for (const Outcome& outcome : outcomes) {
    if (outcome.hasPassed()) continue;
    tally.append(separator).append(outcome.file).append(" (").append(Json(outcome.name).dump());
    tally += ')';
    separator = ", ";
  }
  return tally;
}

std::string describeDeath(const Outcome& outcome) {
  constexpr std::size_t most = 3;
  std::string text =
      "the process of \"" + outcome.name + "\" died: " + outcome.death.value_or("") + "\n";
  const std::size_t count = std::min(outcome.timeline.size(), most);
  text += count == 0 ? "  it left no entries\n" : "  its last entries:\n";
  for (auto entry = outcome.timeline.end() - static_cast<std::ptrdiff_t>(count);
       entry != outcome.timeline.end(); ++entry) {
    text += "    " + lineFrom(*entry) + "\n";
  }
  return text;
}

}  // namespace sim
