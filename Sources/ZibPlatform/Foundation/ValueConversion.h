// Whole values between C++ and the platform.
//
// Not for reading a key or two of a notification: Dictionary does that without converting the rest.

#pragma once

#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// Containers nested deeper than this become the null marker: the nesting of a payload is the
// sender's choice, the stack is ours.
inline constexpr int maximumNesting = 1024;

// Nil gives the null marker. A number made from a boolean is a bool. An object that is no property
// list value is taken by its description, a key that is no string likewise, and a set is an array.
Value valueFrom(objc::id object);
Object objectFrom(const Value& value);
Object objectFrom(const ValueMap& map);

}  // namespace zib
