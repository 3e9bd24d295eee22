// Reading the section "network" of a scenario.

#pragma once

#include <filesystem>

#include "Simulator/Network/Sites.h"
#include "Simulator/Scenario/Node.h"

namespace sim {

// Throws ScenarioError. Reads the files too that are served; their names start from `folder`.
Sites readNetwork(const Node& node, const std::filesystem::path& folder);

}  // namespace sim
