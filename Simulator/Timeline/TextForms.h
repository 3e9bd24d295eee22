// The text forms of what JSON has no type for.

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

std::string base64(std::span<const std::uint8_t> bytes);
// With its padding, and without spaces; none for anything else.
std::optional<std::string> bytesFromBase64(std::string_view text);
// Two digits a byte, of either case; none for anything else.
std::optional<std::vector<std::uint8_t>> bytesFromHex(std::string_view hex);
// In UTC, with milliseconds only where there are any.
std::string iso8601(double secondsSince1970);

}  // namespace sim
