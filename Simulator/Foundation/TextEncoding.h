// Text that arrives as bytes, in whichever Unicode form. All functions throw FormatError for what
// is not well-formed.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace sim {

enum class TextEncoding { utf8, utf16Little, utf16Big, utf32Little, utf32Big };

std::string textFrom(std::span<const std::uint8_t> bytes, TextEncoding encoding);

// Tells the encodings apart by the byte order mark, which is dropped, or by where the NULs of the
// first characters lie.
std::string textFrom(std::span<const std::uint8_t> bytes);

std::string utf16BigFrom(std::string_view utf8);

}  // namespace sim
