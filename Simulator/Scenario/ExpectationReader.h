// The section "expect" of a scenario.

#pragma once

#include "Simulator/Scenario/Kind.h"

namespace sim::kinds {

const Kind<Json>& expectations();

}  // namespace sim::kinds
