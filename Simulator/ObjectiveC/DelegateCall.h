// How the system calls a delegate: only if there is one and it responds; and how it is named.

#pragma once

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {

inline bool responds(zib::objc::id delegate, zib::Selector method) {
  return delegate != nullptr && zib::respondsTo(delegate, method);
}

// The class that the delegate says it is of; the runtime's where it raises as it is asked.
inline const char* classNameOf(zib::objc::id delegate) noexcept {
  try {
    return zib::Class::visibleClassOf(delegate).name();
  } catch (...) {
    return zib::Class::ofObject(delegate).name();
  }
}

}  // namespace sim
