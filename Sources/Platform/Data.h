// Bytes between C++ and the platform (NSData).

#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Platform/Native.h"
#include "Platform/Object.h"

namespace zib {

using Bytes = std::vector<std::uint8_t>;

Object makeData(std::span<const std::uint8_t> bytes);
// A view of the object's own bytes, valid while the object lives and is not changed. Empty for nil
// and for what is no NSData.
std::span<const std::uint8_t> bytesOf(objc::id data);
bool isData(objc::id object);

}  // namespace zib
