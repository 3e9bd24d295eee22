#include "Simulator/Scenario/ExpectationReader.h"

#include "Simulator/Timeline/EntryKinds.h"

namespace sim {
namespace {

std::vector<std::string_view> kindNames() {
  std::vector<std::string_view> names;
  for (const EntryKind& kind : entryKinds()) names.push_back(kind.name);
  return names;
}

// A value for an entry's text is a text, null, or a part of it.
void checkTexts(const Node& pattern, Reading& reading) {
  for (const std::string_view field : textEntryFields()) {
    const auto value = pattern.find(field);
    if (!value || !value->value().is_structured()) continue;
    reading.collectErrorOf([&] {
      value->checkKeys({"contains"}, reading.errors);
      static_cast<void>(value->require("contains").text());
    });
  }
}

// What an entry is compared with: of a kind that there is, with keys that its entries have.
void checkPattern(const Node& pattern, Reading& reading) {
  if (!pattern.value().is_object()) pattern.failType("an object");
  checkTexts(pattern, reading);
  const auto kind = pattern.find("kind");
  if (!kind) {
    pattern.checkKeys(entryFieldsOf({}), reading.errors);
    return;
  }
  const std::string_view name = kindNames()[kind->choice(kindNames())];
  pattern.checkKeys(entryFieldsOf(name), reading.errors);
}

void checkCount(const Node& item, Reading& reading) {
  item.checkKeys({"count", "of"}, reading.errors);
  const Node count = item.require("count");
  if (!count.value().is_number_integer() || count.value() < 0) {
    count.failType("an integer from 0 on");
  }
  checkPattern(item.require("of"), reading);
}

void checkItem(const Node& item, Reading& reading) {
  if (!item.value().is_object()) item.failType("an object");
  if (const auto absent = item.find("absent")) {
    item.checkKeys({"absent"}, reading.errors);
    checkPattern(*absent, reading);
  } else if (const auto unordered = item.find("unordered")) {
    item.checkKeys({"unordered"}, reading.errors);
    for (const Node& each : unordered->list()) {
      reading.collectErrorOf([&] { checkPattern(each, reading); });
    }
  } else if (item.find("count")) {
    checkCount(item, reading);
  } else {
    checkPattern(item, reading);
  }
}

Json schemaOfItems() {
  Json fields = Json::object();
  for (const std::string_view field : entryFieldsOf({})) fields[std::string(field)] = true;
  const Json part = {{"type", "object"},
                     {"properties", {{"contains", {{"type", "string"}}}}},
                     {"required", {"contains"}},
                     {"additionalProperties", false}};
  const Json text = {{"anyOf", {{{"type", {"string", "number", "boolean", "null"}}}, part}}};
  for (const std::string_view field : textEntryFields()) fields[std::string(field)] = text;
  fields["kind"] = {{"enum", kindNames()}};
  const Json pattern = {
      {"type", "object"}, {"properties", fields}, {"additionalProperties", false}};
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
            only({{"unordered", {{"type", "array"}, {"items", pattern}}}}),
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
                               {{"type", "array"}, {"items", schemaOfItems()}}};
  return kind;
}

}  // namespace sim
