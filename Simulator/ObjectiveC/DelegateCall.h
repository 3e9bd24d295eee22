// How the system calls a delegate: only if there is one and it responds.

#pragma once

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {

inline bool responds(zib::objc::id delegate, zib::Selector method) {
  return delegate != nullptr && zib::respondsTo(delegate, method);
}

}  // namespace sim
