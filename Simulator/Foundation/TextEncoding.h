// Text that arrives as bytes, in whichever Unicode form.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace sim {

// Tells UTF-8, UTF-16 and UTF-32 apart by the byte order mark, which is dropped, or by where the
// NULs of the first characters lie. Throws FormatError for what is not well-formed.
std::string textFrom(std::span<const std::uint8_t> bytes);

// `encoding` is a name that iconv knows. Throws FormatError for what is not well-formed.
std::string textFrom(std::span<const std::uint8_t> bytes, const char* encoding);

bool isWellFormed(std::string_view utf8);

}  // namespace sim
