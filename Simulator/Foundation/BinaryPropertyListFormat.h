// What the reader and the writer of binary property lists agree on.

#pragma once

#include <cstddef>
#include <string_view>

namespace sim::bplist {

inline constexpr std::string_view header = "bplist00";
inline constexpr std::size_t trailerSize = 32;

// An object starts with a byte: its kind, and how long it is.
namespace kind {
inline constexpr unsigned simple = 0x0;
inline constexpr unsigned integer = 0x1;
inline constexpr unsigned real = 0x2;
inline constexpr unsigned date = 0x3;
inline constexpr unsigned data = 0x4;
inline constexpr unsigned asciiString = 0x5;
inline constexpr unsigned utf16String = 0x6;
inline constexpr unsigned uid = 0x8;
inline constexpr unsigned array = 0xA;
inline constexpr unsigned dictionary = 0xD;
}  // namespace kind

inline constexpr unsigned falseMarker = 0x08;
inline constexpr unsigned trueMarker = 0x09;
// In place of a length: the length follows as an integer object.
inline constexpr unsigned lengthFollows = 0xF;

}  // namespace sim::bplist
