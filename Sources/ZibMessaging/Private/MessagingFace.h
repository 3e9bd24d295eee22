// The module's object in the runtime, of the class "ZibMessaging".

#pragma once

#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

// What the notification centre and Firebase hold as their delegate where the host has none. It has
// no state and lives as long as the process. Nil when somebody else has a class of that name.
objc::id messagingFace();

}  // namespace zib
