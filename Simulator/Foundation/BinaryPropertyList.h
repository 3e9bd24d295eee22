// The binary form of property lists, "bplist00".

#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "ZibPlatform/Foundation/Value.h"

namespace sim {

inline constexpr std::string_view binaryPropertyListMark = "bplist";

// Trusts nothing in the bytes: whatever they refer to must lie within them, and what they stand for
// when every reference is followed must stay within a Budget. Throws FormatError.
zib::Value readBinaryPropertyList(std::span<const std::uint8_t> bytes);

// Throws FormatError for the null marker, which the form cannot hold.
zib::Bytes writeBinaryPropertyList(const zib::Value& value);

}  // namespace sim
