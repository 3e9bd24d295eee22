// Moments as the calendar shows them in UTC, to the second.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sim {

// Foundation's reference date, 2001-01-01T00:00:00Z, in seconds since 1970.
inline constexpr double referenceDate = 978307200;

// "2026-11-16T00:10:00Z"; fractions of a second are cut off. None for what is no moment or lies
// beyond the year 32767 on either side.
std::optional<std::string> internetDateTime(double secondsSince1970);

// Reads that form back, and only that. None for any other text, and for a day that does not exist.
std::optional<double> secondsFrom(std::string_view text);

}  // namespace sim
