// Reading a JSON document that somebody wrote: what is no JSON, what a parser would let pass, and
// what is nested without end is refused.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Json/Json.h"
#include "Simulator/Scenario/Node.h"

namespace sim {

// The text of a file in UTF-8, without a mark at its beginning: the file as it is where it is in no
// encoding of Unicode.
std::string textOfDocument(std::string_view file);

// Throws ScenarioError.
Json parseDocument(std::string_view text);

// From a document's root to one of its values: keys, and the places in lists.
using Way = std::vector<std::string>;

// To each member whose name another one of its object has before it, as far as the text is JSON
// that is not nested without end.
std::vector<Way> repeatedKeys(std::string_view text);

// Takes the key away by which an .apns file names the app that a simulator hands it to. It is no
// part of the payload.
void removeTargetBundle(Json& payload);

// The contents of the file that a scenario names from its folder on. Throws ScenarioError.
std::string readNamedFile(const Node& name, const std::filesystem::path& folder);

}  // namespace sim
