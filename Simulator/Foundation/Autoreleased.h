// The object as a method returns it that does not give away ownership.

#pragma once

#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {

inline zib::objc::id autoreleased(const zib::Object& object) {
  return zib::send<zib::objc::id>(zib::objc::retain(object.raw()), zib::selector<"autorelease">());
}

}  // namespace sim
