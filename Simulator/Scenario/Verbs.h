// What a step can do: one row for each verb, which says its fields, how it is read, and how it is
// played.

#pragma once

#include <vector>

#include "Simulator/Scenario/Kind.h"
#include "Simulator/Scenario/Playable.h"
#include "Simulator/Scenario/Scenario.h"

namespace sim {

class Stage;

struct Verb : Playable<Action, void, Stage&> {
  using Playable::Playable;
};

// In the order in which they are listed to people.
const std::vector<Verb>& verbs();

namespace kinds {

const Kind<Step>& step();

}  // namespace kinds
}  // namespace sim
