// The module's public operations, as the step `call` names them; Verbs.h has their arguments.

#pragma once

#include <optional>
#include <string>

#include "Simulator/Timeline/Timeline.h"

namespace sim {

// Calls the operation. Gives what it returns, or none for one that returns nothing.
std::optional<Json> callOperation(const std::string& name, const Json& arguments);

}  // namespace sim
