// Likely mistakes in a payload.

#pragma once

#include <vector>

#include "Simulator/Inspect/Inspection.h"
#include "Simulator/Inspect/Payload.h"

namespace sim {

// The inspection is complete but for them.
std::vector<Remark> remarksOn(const Payload& payload, const Inspection& inspection);

// The top-level key that differs from a looked-up one in nothing but case, hyphens and underscores,
// and that the module therefore does not read; empty if there is none.
std::string lookalikeOf(std::string_view lookedUp, const Json& payload);

}  // namespace sim
