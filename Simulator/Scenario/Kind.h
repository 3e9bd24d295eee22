// A kind of value that a scenario can hold: how it is read, and what may stand there.

#pragma once

#include <functional>
#include <utility>

#include "Simulator/Json/Json.h"
#include "Simulator/Scenario/Node.h"
#include "Simulator/Scenario/Reading.h"

namespace sim {

// JSON Schema of what may stand somewhere. It is made when somebody asks for it, which nobody does
// to read a scenario.
using Schema = std::function<Json()>;

// Of a value of one of JSON's types.
Schema schemaOfType(const char* type);
// Of such a value, or null.
Schema schemaOrNull(Schema schema);

template <class T>
struct Kind {
  // Throws ScenarioError.
  std::function<T(const Node&, Reading&)> read;
  Schema schema;
  // The value as a scenario has it; none for kinds without a default that people would want to see.
  std::function<Json(const T&)> write = {};
};

}  // namespace sim
