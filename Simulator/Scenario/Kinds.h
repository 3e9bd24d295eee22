// The kinds of values that several parts of a scenario have.

#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Json/Names.h"
#include "Simulator/Scenario/Kind.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Value.h"

namespace sim::kinds {

const Kind<bool>& boolean();
const Kind<std::optional<bool>>& booleanOrNull();
const Kind<std::string>& text();
const Kind<std::optional<std::string>>& textOrNull();
const Kind<double>& seconds();
// Zero and above, such as a set of options.
const Kind<zib::objc::UInteger>& natural();
const Kind<zib::Bytes>& hex();
// Null stands for none.
const Kind<std::optional<zib::Error>>& error();
// An object as deep as the platform takes it.
const Kind<zib::ValueMap>& payload();
const Kind<std::optional<zib::ValueMap>>& payloadOrNull();
// A text that the device's system takes for a URL.
const Kind<std::string>& url();

template <class Enumeration>
Kind<Enumeration> oneOf() {
  return {[](const Node& node, Reading&) {
            return Names<Enumeration>::rows[node.choice(allNames<Enumeration>())].value;
          },
          [] {
            return Json{{"enum", allNames<Enumeration>()}};
          },
          [](const Enumeration& value) { return Json(nameOf(value)); }};
}

// Of a list of such elements.
Schema schemaOfList(Schema element);
// Of an object with these keys and no others, each with such a value.
Schema schemaOfMap(std::vector<std::string_view> keys, Schema value);

template <class T>
Kind<std::vector<T>> listOf(const Kind<T>& element) {
  return {[read = element.read](const Node& node, Reading& reading) {
            std::vector<T> list;
            for (const Node& each : node.list()) {
              reading.collectErrorOf([&] { list.push_back(read(each, reading)); });
            }
            return list;
          },
          schemaOfList(element.schema)};
}

template <class T>
Kind<std::set<T>> setOf(const Kind<T>& element) {
  return {[read = listOf(element).read](const Node& node, Reading& reading) {
            const std::vector<T> list = read(node, reading);
            return std::set<T>(list.begin(), list.end());
          },
          schemaOfList(element.schema)};
}

// An object whose keys are the names of an enumeration.
template <class Enumeration, class T>
Kind<std::map<Enumeration, T>> mapOf(const Kind<T>& value) {
  return {[read = value.read](const Node& node, Reading& reading) {
            node.checkKeys(allNames<Enumeration>(), reading.errors);
            std::map<Enumeration, T> map;
            for (const auto& row : Names<Enumeration>::rows) {
              const auto found = node.find(row.name);
              if (!found) continue;
              reading.collectErrorOf([&] { map.emplace(row.value, read(*found, reading)); });
            }
            return map;
          },
          schemaOfMap(allNames<Enumeration>(), value.schema)};
}

// Null stands for none.
template <class T>
Kind<std::optional<T>> orNull(const Kind<T>& kind) {
  return {[read = kind.read](const Node& node, Reading& reading) {
            return node.hasObject() ? std::optional(read(node, reading)) : std::nullopt;
          },
          schemaOrNull(kind.schema)};
}

}  // namespace sim::kinds
