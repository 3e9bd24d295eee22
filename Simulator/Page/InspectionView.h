// An inspection as a part of a page.

#pragma once

#include "Simulator/Inspect/Inspection.h"
#include "Simulator/Page/Markup.h"

namespace sim {

Markup viewOf(const Inspection& inspection);

}  // namespace sim
