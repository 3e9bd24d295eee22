// What a step can do: one row for each verb, which says its fields, how it is read, and how it is
// played.

#pragma once

#include <vector>

#include "Simulator/Scenario/Kind.h"
#include "Simulator/Scenario/Row.h"
#include "Simulator/Scenario/Scenario.h"

namespace sim {

class Stage;

struct Verb : Row<Action, void, Stage&> {
  using Row::Row;
};

// In the order in which they are listed to people.
const std::vector<Verb>& verbs();

namespace kinds {

const Kind<Step>& step();

}  // namespace kinds
}  // namespace sim
