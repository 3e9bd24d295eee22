// The old text form of property lists, `{ key = (one, "two", <03>); }`, and the form of strings
// files, which is a dictionary without its braces.

#pragma once

#include <string_view>

#include "ZibPlatform/Foundation/Value.h"

namespace sim {

// All scalars are strings or data: the form knows no numbers. White space alone is an empty
// dictionary. Throws FormatError.
zib::Value readTextPropertyList(std::string_view utf8);

}  // namespace sim
