// The platform's property-list reader and writer.

#pragma once

#include <cstdint>
#include <span>

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Result.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// Reads every form that the platform reads: XML, binary and the old text form. Gives the platform's
// object, which is of any property-list type.
Result<Object> parsePropertyList(std::span<const std::uint8_t> bytes);

// The XML form, as an NSData.
Result<Object> xmlPropertyList(const Dictionary& dictionary);

}  // namespace zib
