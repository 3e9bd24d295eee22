// Timelines as a part of a page: the entries by lane, and what was expected of them.

#pragma once

#include <vector>

#include "Simulator/Page/Markup.h"
#include "Simulator/Report/Outcome.h"

namespace sim {

Markup viewOf(const std::vector<Outcome>& outcomes);

}  // namespace sim
