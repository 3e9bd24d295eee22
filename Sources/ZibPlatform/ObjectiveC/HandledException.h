// What the platform threw. Each runtime throws its objects in its own way, which Native.cpp knows.

#pragma once

#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib::objc {

// The NSException that was thrown, where a catch block of the caller's is handling one; nil for
// anything else.
id handledException() noexcept;

}  // namespace zib::objc
