// The text forms of what JSON has no type for, and texts as a line shows them. Base64 is
// Foundation's.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

// Two digits a byte, of either case; none for anything else.
std::optional<std::vector<std::uint8_t>> bytesFromHex(std::string_view hex);
// In UTC, with milliseconds only where there are any. As a number for what no calendar shows.
std::string iso8601(double secondsSince1970);
// The text with all escaped that would break a line, steer a terminal or turn the direction of what
// follows.
std::string oneLine(std::string_view text);

}  // namespace sim
