// JSON text as a value, strictly by RFC 8259.

#pragma once

#include <cstdint>
#include <span>

#include "ZibPlatform/Foundation/Value.h"

namespace sim {

// UTF-8, UTF-16 or UTF-32, with a byte order mark or without. Integers stay integers as long as 64
// bits hold them; a number that is written with a fraction or an exponent is a double. Throws
// FormatError.
zib::Value readJSON(std::span<const std::uint8_t> bytes, bool allowsFragments);

}  // namespace sim
