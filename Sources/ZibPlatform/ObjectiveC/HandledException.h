// What the platform threw. Each runtime throws its objects in its own way, which Native.cpp knows.

#pragma once

#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib::objc {

// The object that was thrown, where a catch block of the caller's is handling an exception of the
// platform's; nil for any other.
id handledException() noexcept;

}  // namespace zib::objc
