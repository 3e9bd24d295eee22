// Reading a scenario.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "Simulator/Scenario/Scenario.h"

namespace sim {

// Throws ScenarioErrors. `defaultName` is used where the scenario has none. Files that the scenario
// names are looked for from `folder`.
Scenario readScenario(std::string_view text, const std::string& defaultName,
                      const std::filesystem::path& folder = {});

// JSON Schema (draft 2020-12) of a scenario.
Json scenarioSchema();

}  // namespace sim
