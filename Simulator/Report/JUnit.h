// The outcome of a run in the XML that CI systems read.

#pragma once

#include <string>
#include <vector>

#include "Simulator/Report/Outcome.h"

namespace sim {

std::string junitFrom(const std::vector<Outcome>& outcomes);

}  // namespace sim
