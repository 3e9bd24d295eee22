// The section "network" of a scenario. The files that are served are read with it.

#pragma once

#include "Simulator/Network/Sites.h"
#include "Simulator/Scenario/Kind.h"

namespace sim::kinds {

const Kind<Sites>& network();

}  // namespace sim::kinds
