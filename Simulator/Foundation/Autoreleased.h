// The object as a method returns it that does not give away ownership.

#pragma once

#include "Platform/Object.h"
#include "Platform/Send.h"

namespace sim {

inline zib::objc::id autoreleased(const zib::Object& object) {
  return zib::send<zib::objc::id>(zib::objc::retain(object.raw()), zib::selector<"autorelease">());
}

}  // namespace sim
