// Where the URL of an HTTP request leads.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Simulator/HTTP/Transfer.h"

namespace sim {

// None for what is no URL of http or https.
std::optional<Location> locate(std::string_view url);

// ASCII only, as in schemes, host names and header names.
std::string lowerCase(std::string_view text);

}  // namespace sim
