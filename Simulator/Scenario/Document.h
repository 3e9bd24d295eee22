// Reading a JSON document that somebody wrote: what is no JSON, what a parser would let pass, and
// what is nested without end is refused.

#pragma once

#include <filesystem>
#include <string_view>

#include "Simulator/Json/Json.h"
#include "Simulator/Scenario/Node.h"

namespace sim {

// Throws ScenarioError.
Json parseDocument(std::string_view text);

// Takes the key away by which an .apns file names the app that a simulator hands it to. It is no
// part of the payload.
void removeTargetBundle(Json& payload);

// The contents of the file that a scenario names from its folder on. Throws ScenarioError.
std::string readNamedFile(const Node& name, const std::filesystem::path& folder);

}  // namespace sim
