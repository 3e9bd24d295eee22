#include "Simulator/Scenario/Expectations.h"

#include <algorithm>
#include <tuple>

namespace sim {
namespace {

// Objects match key by key, everything else exactly.
bool matches(const Json& expected, const Json& actual) {
  if (!expected.is_object()) return expected == actual;
  if (!actual.is_object()) return false;
  const auto items = expected.items();
  return std::all_of(items.begin(), items.end(), [&](const auto& item) {
    const auto member = actual.find(item.key());
    return member != actual.end() && matches(item.value(), *member);
  });
}

constexpr int likenessOfEqual = 1000;

// How much of what is expected an entry has: each member that matches counts, those of nested
// objects too, and a little each that is there with another value.
int likeness(const Json& expected, const Json& actual) {
  if (!expected.is_object() || !actual.is_object()) return expected == actual ? likenessOfEqual : 1;
  int sum = 0;
  for (const auto& [key, value] : expected.items()) {
    const auto member = actual.find(key);
    if (member != actual.end()) sum += likeness(value, *member);
  }
  return sum;
}

// The entries that are most like what is expected, at most three; of those that are equally like
// it, the ones first that it could have matched.
std::vector<std::size_t> nearestEntries(const Json& expected, const std::vector<Json>& timeline,
                                        std::size_t from) {
  constexpr std::size_t most = 3;
  using Rank = std::tuple<int, bool, std::size_t>;
  std::vector<Rank> ranks;
  for (std::size_t index = 0; index < timeline.size(); ++index) {
    const int score = likeness(expected, timeline[index]);
    if (score > 0) ranks.emplace_back(-score, index < from, index);
  }
  std::sort(ranks.begin(), ranks.end());
  // One with nothing but the same keys is no help beside one that has a value too.
  const auto hasValue = [](const Rank& rank) { return -std::get<int>(rank) >= likenessOfEqual; };
  std::vector<std::size_t> nearest;
  for (const Rank& rank : ranks) {
    if (nearest.size() == most || hasValue(rank) != hasValue(ranks.front())) break;
    nearest.push_back(std::get<std::size_t>(rank));
  }
  return nearest;
}

std::string describeNearest(const Json& expected, const std::vector<Json>& timeline,
                            std::size_t from) {
  const std::vector<std::size_t> nearest = nearestEntries(expected, timeline, from);
  if (nearest.empty()) return "\n  no entry is like it";
  std::string text = "\n  nearest entries:";
  for (const std::size_t index : nearest) {
    text += "\n    " + lineFrom(timeline[index]);
    if (index < from && matches(expected, timeline[index])) {
      text += "\n      (comes before the entry that the expectation above it matched)";
    }
  }
  return text;
}

std::string describeMiss(std::size_t index, const Json& item) {
  return "expectation " + std::to_string(index) + " is not met: " + item.dump();
}

}  // namespace

std::vector<std::string> unmetExpectations(const Json& expectations,
                                           const std::vector<Json>& timeline) {
  std::vector<std::string> unmet;
  std::size_t from = 0;
  for (std::size_t index = 0; index < expectations.size(); ++index) {
    const Json& item = expectations[index];
    const auto isMatch = [&](const Json& entry) {
      return matches(item.contains("absent") ? item.at("absent") : item, entry);
    };
    if (item.contains("absent")) {
      const auto found = std::find_if(timeline.begin(), timeline.end(), isMatch);
      if (found != timeline.end()) {
        unmet.push_back(describeMiss(index, item) + "\n  this entry is there:\n    " +
                        lineFrom(*found));
      }
      continue;
    }
    const auto start = timeline.begin() + static_cast<std::ptrdiff_t>(from);
    const auto found = std::find_if(start, timeline.end(), isMatch);
    if (found == timeline.end()) {
      unmet.push_back(describeMiss(index, item) + describeNearest(item, timeline, from));
    } else {
      from = static_cast<std::size_t>(found - timeline.begin()) + 1;
    }
  }
  return unmet;
}

std::vector<std::string> problems(const std::vector<Json>& timeline) {
  std::vector<std::string> found;
  for (const Json& entry : timeline) {
    if (entry.at("kind") == "problem") {
      found.push_back("a problem, which --strict does not allow:\n    " + lineFrom(entry));
    }
  }
  return found;
}

}  // namespace sim
