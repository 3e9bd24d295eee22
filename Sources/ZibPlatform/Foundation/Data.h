// Bytes between C++ and the platform (NSData).

#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

using Bytes = std::vector<std::uint8_t>;

Object makeData(std::span<const std::uint8_t> bytes);
// A view of the object's own bytes, valid while the object lives and is not changed. Empty for nil
// and for what is no NSData.
std::span<const std::uint8_t> bytesOf(objc::id data);

}  // namespace zib
