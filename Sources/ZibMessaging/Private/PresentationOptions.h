// How the module presents a notification while the app is in the foreground.

#pragma once

#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

// Banner, sound and badge, and before iOS 14, which has no banner, an alert instead.
objc::UInteger foregroundPresentationOptions();

}  // namespace zib
