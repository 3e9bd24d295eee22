// The JSON that scenarios are written in and timelines are made of.

#pragma once

#include <nlohmann/json.hpp>

namespace sim {

using Json = nlohmann::json;

}  // namespace sim
