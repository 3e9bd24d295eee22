// Objects that answer for another one by forwarding, as SwiftUI's application delegate, multicast
// delegates and proxies do.

#pragma once

#include "Simulator/Host/HostClasses.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace sim {

// Registers a class whose objects forward so. It has no delegate methods of its own yet.
zib::Class registerForwardingClass(const char* name, zib::Class superclass, Forwarding forwarding);

// A new object of such a class, or of one that derives from it.
zib::Object makeForwardingObject(zib::Class cls, const zib::Object& target);

}  // namespace sim
