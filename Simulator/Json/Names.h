// The names of an enumeration's values, as a scenario and the timeline have them: one table a type.

#pragma once

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

namespace sim {

template <class Enumeration>
struct Named {
  Enumeration value;
  std::string_view name;
};

// Specialised beside each enumeration that has names: `rows`, an array of Named, in the order in
// which they are listed to people. A value without a row has no name.
template <class Enumeration>
struct Names;

template <class Enumeration>
std::string_view nameOf(Enumeration value) {
  const auto& rows = Names<Enumeration>::rows;
  const auto found = std::find_if(std::begin(rows), std::end(rows),
                                  [value](const auto& row) { return row.value == value; });
  return found == std::end(rows) ? std::string_view() : found->name;
}

template <class Enumeration>
std::vector<std::string_view> allNames() {
  std::vector<std::string_view> names;
  for (const auto& row : Names<Enumeration>::rows) names.push_back(row.name);
  return names;
}

}  // namespace sim
