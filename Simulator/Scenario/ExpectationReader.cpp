#include "Simulator/Scenario/ExpectationReader.h"

#include <algorithm>

#include "Simulator/Scenario/EntryKinds.h"
#include "Simulator/Scenario/Kinds.h"
#include "Simulator/Scenario/Playable.h"

namespace sim {
namespace {

using NameList = std::vector<std::string_view>;

const NameList& kindNames() {
  static const NameList names = namesOf(entryKinds());
  return names;
}

// What stands in the list itself, and not inside of an item.
const NameList& wholeItems() {
  static const NameList keys{"absent", "unordered", "count"};
  return keys;
}

NameList keysOf(const EntryKind& kind) {
  NameList keys{"kind"};
  for (const EntryField& field : kind.fields) keys.push_back(field.name);
  return keys;
}

const NameList& keysOfAllKinds() {
  static const NameList keys = [] {
    NameList all;
    for (const EntryKind& kind : entryKinds()) {
      for (const std::string_view key : keysOf(kind)) {
        if (std::find(all.begin(), all.end(), key) == all.end()) all.push_back(key);
      }
    }
    return all;
  }();
  return keys;
}

void checkFields(const Node& pattern, const EntryKind& kind, Reading& reading) {
  for (const EntryField& field : kind.fields) {
    const auto value = pattern.find(field.name);
    if (!value) continue;
    reading.collectErrorOf([&] { static_cast<void>(field.pattern.read(*value, reading)); });
  }
}

// The kinds that have every key of the pattern, and a name as it says where it gives a part of one.
std::vector<const EntryKind*> kindsOf(const Node& pattern, std::string_view partOfName) {
  std::vector<const EntryKind*> kinds;
  for (const EntryKind& kind : entryKinds()) {
    const NameList keys = keysOf(kind);
    const auto items = pattern.value().items();
    const bool hasAll = std::all_of(items.begin(), items.end(), [&](const auto& item) {
      return std::find(keys.begin(), keys.end(), item.key()) != keys.end();
    });
    if (hasAll && kind.name.find(partOfName) != std::string_view::npos) kinds.push_back(&kind);
  }
  return kinds;
}

// What every kind has against a pattern in the same words.
std::vector<ScenarioError> errorsInAll(const std::vector<std::vector<ScenarioError>>& errors) {
  std::vector<ScenarioError> found = errors.front();
  std::erase_if(found, [&](const ScenarioError& error) {
    return !std::all_of(errors.begin(), errors.end(), [&](const auto& ofKind) {
      return std::any_of(ofKind.begin(), ofKind.end(), [&](const ScenarioError& other) {
        return std::string_view(other.what()) == error.what();
      });
    });
  });
  return found;
}

// Of no single kind: there has to be one whose entries could match.
void checkAgainstKinds(const Node& pattern, std::string_view partOfName, Reading& reading) {
  const std::size_t errorsBefore = reading.errors.size();
  pattern.checkKeys(keysOfAllKinds(), reading.errors);
  if (reading.errors.size() > errorsBefore) return;
  const auto kinds = kindsOf(pattern, partOfName);
  if (kinds.empty()) {
    pattern.fail("no kind of entry has all of these keys", "keys that entries of one kind have");
  }
  std::vector<std::vector<ScenarioError>> errors;
  for (const EntryKind* const kind : kinds) {
    Reading attempt;
    checkFields(pattern, *kind, attempt);
    if (attempt.errors.empty()) return;
    errors.push_back(std::move(attempt.errors));
  }
  const auto inAll = errorsInAll(errors);
  if (inAll.empty()) {
    NameList names;
    for (const EntryKind* const kind : kinds) names.push_back(kind->name);
    pattern.fail("no entry has these values",
                 "values of one of the kinds that have these keys: " + quotedList(names));
  }
  reading.errors.insert(reading.errors.end(), inAll.begin(), inAll.end());
}

void refuseWholeItem(const Node& pattern) {
  for (const std::string_view key : wholeItems()) {
    if (!pattern.find(key)) continue;
    Node(pattern.value(), pattern.pointer() + "/" + std::string(key))
        .fail("stands only in the list \"expect\" itself, and not inside of an item",
              "the keys of an entry");
  }
}

// What an entry is compared with: of a kind that there is, with keys that its entries have, and
// values that these can have.
void checkPattern(const Node& pattern, Reading& reading) {
  if (!pattern.value().is_object()) pattern.failType("an object");
  const auto kind = pattern.find("kind");
  if (!kind) return checkAgainstKinds(pattern, {}, reading);
  if (kind->value().is_object()) {
    kind->checkKeys({"contains"}, reading.errors);
    return checkAgainstKinds(pattern, kind->require("contains").text(), reading);
  }
  const EntryKind& known = entryKinds()[kind->choice(kindNames())];
  pattern.checkKeys(keysOf(known), reading.errors);
  checkFields(pattern, known, reading);
}

void checkInnerPattern(const Node& pattern, Reading& reading) {
  if (pattern.value().is_object()) refuseWholeItem(pattern);
  checkPattern(pattern, reading);
}

void checkCount(const Node& item, Reading& reading) {
  item.checkKeys({"count", "of"}, reading.errors);
  const Node count = item.require("count");
  if (!count.isIntegral() || count.value() < 0) count.failType("an integer from 0 on");
  checkInnerPattern(item.require("of"), reading);
}

void checkUnordered(const Node& list, Reading& reading) {
  if (list.list().empty()) list.fail("there is nothing to expect", "a list of at least one item");
  for (const Node& each : list.list()) {
    reading.collectErrorOf([&] { checkInnerPattern(each, reading); });
  }
}

void checkItem(const Node& item, Reading& reading) {
  if (!item.value().is_object()) item.failType("an object");
  if (const auto absent = item.find("absent")) {
    item.checkKeys({"absent"}, reading.errors);
    checkInnerPattern(*absent, reading);
  } else if (const auto unordered = item.find("unordered")) {
    item.checkKeys({"unordered"}, reading.errors);
    checkUnordered(*unordered, reading);
  } else if (item.find("count")) {
    checkCount(item, reading);
  } else {
    checkPattern(item, reading);
  }
}

Json schemaOfItems() {
  const Json pattern = {{"$ref", "#/$defs/entry"}};
  const auto only = [](const Json& properties) {
    Json required = Json::array();
    for (const auto& [key, value] : properties.items()) required.push_back(key);
    return Json{{"type", "object"},
                {"properties", properties},
                {"required", required},
                {"additionalProperties", false}};
  };
  return {{"anyOf",
           {pattern, only({{"absent", pattern}}),
            only({{"unordered", {{"type", "array"}, {"minItems", 1}, {"items", pattern}}}}),
            only({{"count", {{"type", "integer"}, {"minimum", 0}}}, {"of", pattern}})}}};
}

}  // namespace

const Kind<Json>& kinds::expectations() {
  static const Kind<Json> kind{[](const Node& node, Reading& reading) {
                                 for (const Node& item : node.list()) {
                                   reading.collectErrorOf([&] { checkItem(item, reading); });
                                 }
                                 return node.value();
                               },
                               schemaOfList(&schemaOfItems)};
  return kind;
}

}  // namespace sim
