// Values as JSON text.
//
// Not for reading JSON, which the platform does (JSON.h).

#pragma once

#include <string>

#include "ZibPlatform/Foundation/Value.h"

namespace zib {

// One line, the members of objects by name. What JSON has no word for is written as text: bytes in
// base64, dates in ISO 8601; a number that is none is null.
std::string jsonTextOf(const Value& value);

}  // namespace zib
