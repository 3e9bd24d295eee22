// A row in a table of things that a scenario can name and that then happen: its name, its fields,
// how it is read, and how it is played.

#pragma once

#include <functional>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "Simulator/Scenario/Record.h"

namespace sim {

// `Action` is a variant of what the rows of the table are read into, each into its own alternative.
template <class Action, class Result, class... Context>
struct Playable {
  template <class Alternative>
  using Play = Result (*)(Context..., const Alternative&);

  template <class Alternative>
  Playable(std::string_view name_, std::string_view meaning_, const Record<Alternative>& record,
           std::type_identity_t<Play<Alternative>> playAlternative)
      : name(name_),
        meaning(meaning_),
        fields(record.fields()),
        read([record](const Node& node, Reading& reading, const Keys& otherKeys) -> Action {
          return record.read(node, reading, otherKeys);
        }),
        play([playAlternative](Context... context, const Action& action) -> Result {
          return playAlternative(context..., std::get<Alternative>(action));
        }) {}

  std::string_view name;
  // For people, of a sentence without its full stop.
  std::string_view meaning;
  std::vector<Field> fields;
  // Gets the node that has the fields, and the keys that it may have beside them.
  std::function<Action(const Node&, Reading&, const Keys& otherKeys)> read;
  std::function<Result(Context..., const Action&)> play;
};

template <class RowOfTable>
std::vector<std::string_view> namesOf(const std::vector<RowOfTable>& table) {
  std::vector<std::string_view> names;
  names.reserve(table.size());
  for (const RowOfTable& row : table) names.push_back(row.name);
  return names;
}

}  // namespace sim
