// A kind of value that a scenario can hold: how it is read, and what may stand there.

#pragma once

#include <functional>

#include "Simulator/Json/Json.h"
#include "Simulator/Scenario/Node.h"
#include "Simulator/Scenario/Reading.h"

namespace sim {

template <class T>
struct Kind {
  // Throws ScenarioError.
  std::function<T(const Node&, Reading&)> read;
  // JSON Schema of what may stand there.
  Json schema;
  // The value as a scenario has it; none for kinds without a default that people would want to see.
  std::function<Json(const T&)> write = {};
};

}  // namespace sim
