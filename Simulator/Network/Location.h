// Where the URL of an HTTP request leads.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Simulator/HTTP/Transfer.h"

namespace sim {

// None for what is no URL of http or https.
std::optional<Location> locate(std::string_view url);

}  // namespace sim
