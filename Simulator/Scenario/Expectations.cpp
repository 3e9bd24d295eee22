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

// How much two texts have in common at their starts and ends, if it is most of them; less than
// equal ones in any case.
int likenessOfTexts(std::string_view expected, std::string_view actual) {
  constexpr int likenessOfUnequal = likenessOfEqual / 2;
  const std::size_t shorter = std::min(expected.size(), actual.size());
  std::size_t start = 0;
  while (start < shorter && expected[start] == actual[start]) ++start;
  std::size_t end = 0;
  while (end < shorter - start &&
         expected[expected.size() - 1 - end] == actual[actual.size() - 1 - end]) {
    ++end;
  }
  const std::size_t longer = std::max<std::size_t>({expected.size(), actual.size(), 1});
  const std::size_t common = start + end;
  return 2 * common < longer ? 1 : static_cast<int>(common * likenessOfUnequal / longer);
}

// How much of what is expected an entry has: each member that matches counts, those of nested
// objects too, a text as far as it is alike, and a little each that is there with another value.
int likeness(const Json& expected, const Json& actual) {
  if (matches(expected, actual)) {
    if (!expected.is_object()) return likenessOfEqual;
  } else if (expected.is_string() && actual.is_string()) {
    return likenessOfTexts(expected.get_ref<const std::string&>(),
                           actual.get_ref<const std::string&>());
  }
  if (!expected.is_object() || !actual.is_object()) return 1;
  int sum = 0;
  for (const auto& [key, value] : expected.items()) {
    const auto member = actual.find(key);
    if (member != actual.end()) sum += likeness(value, *member);
  }
  return sum;
}

// The entries that are most like what is expected, at most three, but for those that are known; of
// those that are equally like it, the ones first that it could have matched.
std::vector<std::size_t> nearestEntries(const Json& expected, const std::vector<Json>& timeline,
                                        std::size_t from, const std::vector<std::size_t>& known) {
  constexpr std::size_t most = 3;
  using Rank = std::tuple<int, bool, std::size_t>;
  std::vector<Rank> ranks;
  for (std::size_t index = 0; index < timeline.size(); ++index) {
    if (std::binary_search(known.begin(), known.end(), index)) continue;
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

  Judgement judge(const Json& item) {
    if (item.contains("absent")) return judgeAbsent(item.at("absent"));
    if (item.contains("unordered")) return judgeUnordered(item.at("unordered"));
    if (item.contains("count")) return judgeCount(item);
    for (std::size_t index = from_; index < timeline_.size(); ++index) {
      if (!matches(item, timeline_[index])) continue;
      from_ = index + 1;
      return {{}, {index}};
    }
    return missOf(item, {});
  }

 private:
  [[nodiscard]] std::vector<std::size_t> matching(const Json& pattern) const {
    std::vector<std::size_t> found;
    for (std::size_t index = 0; index < timeline_.size(); ++index) {
      if (matches(pattern, timeline_[index])) found.push_back(index);
    }
    return found;
  }

  [[nodiscard]] Judgement judgeAbsent(const Json& pattern) const {
    const std::vector<std::size_t> found = matching(pattern);
    if (found.empty()) return {};
    return {"\n  this entry is there:\n    " + lineFrom(timeline_[found.front()]), found};
  }

  [[nodiscard]] Judgement judgeCount(const Json& item) const {
    std::vector<std::size_t> found = matching(item.at("of"));
    if (item.at("count") == found.size()) return {{}, std::move(found)};
    const std::string count = "\n  the entries that match are " + std::to_string(found.size());
    if (item.at("count") > found.size()) return missOf(item.at("of"), count, found);
    return {count, std::move(found)};
  }

  // Each item gets an entry of its own, whichever way that is possible for most of them.
  Judgement judgeUnordered(const Json& items) {
    std::map<std::size_t, std::size_t> itemsByEntry;
    for (std::size_t item = 0; item < items.size(); ++item) {
      std::set<std::size_t> tried;
      if (assign(items, item, itemsByEntry, tried)) continue;
      return missOf(items[item], "\n  no entry of its own is there for " + items[item].dump());
    }
    if (!itemsByEntry.empty()) from_ = itemsByEntry.rbegin()->first + 1;
    Judgement met;
    for (const auto& [entry, item] : itemsByEntry) met.entries.push_back(entry);
    return met;
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

  // With the nearest entries, after what is said first, and beside those that are known to match.
  [[nodiscard]] Judgement missOf(const Json& expected, const std::string& first,
                                 const std::vector<std::size_t>& known = {}) const {
    Judgement judgement{first, nearestEntries(expected, timeline_, from_, known)};
    const std::string other = known.empty() ? "" : "other ";
    judgement.miss += judgement.entries.empty() ? "\n  no " + other + "entry is like it"
                                                : "\n  nearest " + other + "entries:";
    for (const std::size_t index : judgement.entries) {
      judgement.miss += "\n    " + lineFrom(timeline_[index]);
      if (index < from_ && matches(expected, timeline_[index])) {
        judgement.miss += "\n      (comes before the entry that the expectation above it matched)";
      }
      addDifferences(expected, timeline_[index], {}, judgement.miss);
    }
    return judgement;
  }

  const std::vector<Json>& timeline_;
  std::size_t from_ = 0;
};

}  // namespace

std::vector<Judgement> judge(const Json& expectations, const std::vector<Json>& timeline) {
  std::vector<Judgement> judgements;
  Judge judge(timeline);
  for (std::size_t index = 0; index < expectations.size(); ++index) {
    Judgement judgement = judge.judge(expectations[index]);
    if (!judgement.miss.empty()) {
      judgement.miss = "expectation " + std::to_string(index) +
                       " is not met: " + expectations[index].dump() + judgement.miss;
    }
    judgements.push_back(std::move(judgement));
  }
  return judgements;
}

std::vector<std::string> unmetExpectations(const Json& expectations,
                                           const std::vector<Json>& timeline) {
  std::vector<std::string> unmet;
  for (Judgement& judgement : judge(expectations, timeline)) {
    if (!judgement.miss.empty()) unmet.push_back(std::move(judgement.miss));
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
