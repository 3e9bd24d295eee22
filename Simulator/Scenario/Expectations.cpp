#include "Simulator/Scenario/Expectations.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace sim {
namespace {

// {"contains": TEXT}, which stands for each text that does.
const std::string* partOf(const Json& expected) {
  const bool isPart = expected.is_object() && expected.size() == 1 &&
                      expected.contains("contains") && expected.at("contains").is_string();
  return isPart ? expected.at("contains").get_ptr<const std::string*>() : nullptr;
}

bool matches(const Json& expected, const Json& actual);

// {"contains": ITEM}, which stands for each list with an element that matches the item.
// NOLINTNEXTLINE(misc-no-recursion): as deep as what is expected
bool isIn(const Json& actual, const Json& expected) {
  return expected.is_object() && expected.size() == 1 && expected.contains("contains") &&
         std::any_of(actual.begin(), actual.end(), [&](const Json& element) {
           return matches(expected.at("contains"), element);
         });
}

// Objects match key by key, everything else exactly.
// NOLINTNEXTLINE(misc-no-recursion): as deep as what is expected
bool matches(const Json& expected, const Json& actual) {
  const std::string* const part = partOf(expected);
  if (part != nullptr && actual.is_string()) {
    return actual.get_ref<const std::string&>().find(*part) != std::string::npos;
  }
  if (actual.is_array() && isIn(actual, expected)) return true;
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
  if (!expected.is_object() || !actual.is_object()) {
    return matches(expected, actual) ? likenessOfEqual : 1;
  }
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

std::string placeOf(const std::string& way, const std::string& key) {
  return way.empty() ? key : way + "." + key;
}

// What of an entry is not as expected, each with the way to it.
void addDifferences(const Json& expected, const Json& actual, const std::string& way,
                    std::string& text) {
  if (matches(expected, actual)) return;
  if (expected.is_object() && actual.is_object()) {
    for (const auto& [key, value] : expected.items()) {
      const std::string place = placeOf(way, key);
      const auto member = actual.find(key);
      if (member == actual.end()) {
        text += "\n      " + place + " is not there; expected: " + value.dump();
      } else {
        addDifferences(value, *member, place, text);
      }
    }
  } else {
    text += "\n      " + way + " is " + actual.dump() + "; expected: " + expected.dump();
  }
}

// One after another, as the timeline is searched.
class Judge {
 public:
  explicit Judge(const std::vector<Json>& timeline) : timeline_(timeline) {}

  // Nothing where it is met.
  std::string judge(const Json& item) {
    if (item.contains("absent")) return judgeAbsent(item.at("absent"));
    if (item.contains("unordered")) return judgeUnordered(item.at("unordered"));
    if (item.contains("count")) return judgeCount(item);
    for (std::size_t index = from_; index < timeline_.size(); ++index) {
      if (!matches(item, timeline_[index])) continue;
      from_ = index + 1;
      return {};
    }
    return describeNearest(item);
  }

 private:
  [[nodiscard]] std::string judgeAbsent(const Json& pattern) const {
    const auto found = std::find_if(timeline_.begin(), timeline_.end(),
                                    [&](const Json& entry) { return matches(pattern, entry); });
    if (found == timeline_.end()) return {};
    return "\n  this entry is there:\n    " + lineFrom(*found);
  }

  [[nodiscard]] std::string judgeCount(const Json& item) const {
    const auto count = std::count_if(timeline_.begin(), timeline_.end(), [&](const Json& entry) {
      return matches(item.at("of"), entry);
    });
    if (item.at("count") == count) return {};
    return "\n  the entries that match are " + std::to_string(count) +
           (count == 0 ? describeNearest(item.at("of")) : std::string());
  }

  // Each item gets an entry of its own, whichever way that is possible for most of them.
  std::string judgeUnordered(const Json& items) {
    std::map<std::size_t, std::size_t> itemsByEntry;
    for (std::size_t item = 0; item < items.size(); ++item) {
      std::set<std::size_t> tried;
      if (assign(items, item, itemsByEntry, tried)) continue;
      return "\n  no entry of its own is there for " + items[item].dump() +
             describeNearest(items[item]);
    }
    if (!itemsByEntry.empty()) from_ = itemsByEntry.rbegin()->first + 1;
    return {};
  }

  // NOLINTNEXTLINE(misc-no-recursion): as deep as there are items
  bool assign(const Json& items, std::size_t item, std::map<std::size_t, std::size_t>& itemsByEntry,
              std::set<std::size_t>& tried) const {
    for (std::size_t entry = from_; entry < timeline_.size(); ++entry) {
      if (!matches(items[item], timeline_[entry]) || !tried.insert(entry).second) continue;
      const auto taken = itemsByEntry.find(entry);
      if (taken == itemsByEntry.end() || assign(items, taken->second, itemsByEntry, tried)) {
        itemsByEntry[entry] = item;
        return true;
      }
    }
    return false;
  }

  [[nodiscard]] std::string describeNearest(const Json& expected) const {
    const std::vector<std::size_t> nearest = nearestEntries(expected, timeline_, from_);
    if (nearest.empty()) return "\n  no entry is like it";
    std::string text = "\n  nearest entries:";
    for (const std::size_t index : nearest) {
      text += "\n    " + lineFrom(timeline_[index]);
      if (index < from_ && matches(expected, timeline_[index])) {
        text += "\n      (comes before the entry that the expectation above it matched)";
      }
      addDifferences(expected, timeline_[index], {}, text);
    }
    return text;
  }

  const std::vector<Json>& timeline_;
  std::size_t from_ = 0;
};

}  // namespace

std::vector<std::string> unmetExpectations(const Json& expectations,
                                           const std::vector<Json>& timeline) {
  std::vector<std::string> unmet;
  Judge judge(timeline);
  for (std::size_t index = 0; index < expectations.size(); ++index) {
    const std::string miss = judge.judge(expectations[index]);
    if (miss.empty()) continue;
    unmet.push_back("expectation " + std::to_string(index) +
                    " is not met: " + expectations[index].dump() + miss);
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
