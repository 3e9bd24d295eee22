// What a step can do, and which fields each verb takes.

#pragma once

#include <string_view>
#include <vector>

#include "Simulator/Scenario/Node.h"
#include "Simulator/Scenario/Scenario.h"

namespace sim {

// What a field of a step holds.
enum class FieldType {
  boolean,
  booleanOrNull,
  text,
  textOrNull,
  seconds,
  index,  // of a scene that is connected by then
  hex,
  error,
  userInfo,
  dictionaryOrNull,
  url,
  urls,
  delegate,
  notificationDelegate,
  firebase,
  config,
  operation,
};

struct Field {
  std::string_view name;
  FieldType type;
  bool isRequired = true;
};

struct Verb {
  std::string_view name;
  std::vector<Field> fields;
};

// In the order in which they are listed to people.
const std::vector<Verb>& verbs();
// The public operations that the step `call` knows, with their arguments.
const std::vector<Verb>& operations();

// Checks a step and gives it. `connectedScenes` counts the scenes that are connected when the step
// begins.
Step readStep(const Node& node, HostClassDescriptions& classes, std::size_t& connectedScenes);

}  // namespace sim
