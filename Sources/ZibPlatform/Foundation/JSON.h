// The platform's JSON reader.

#pragma once

#include <cstdint>
#include <span>

#include "ZibPlatform/Foundation/Result.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// Strict: the root is an object or an array. Gives the platform's dictionary or array.
Result<Object> parseJSON(std::span<const std::uint8_t> bytes);

}  // namespace zib
