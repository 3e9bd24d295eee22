// Another library in the host app that puts a function of its own before a delegate's method, as
// other push SDKs and analytics do.

#pragma once

#include <string>

#include "Simulator/Host/HostClasses.h"

namespace sim {

// From now on a call of the method, which the class has or inherits, runs through the library's
// function, which calls what it found there. Once for each method; false, and nothing is done, when
// it was done before or the class has no such method.
bool replaceByOtherLibrary(const std::string& className, HostMethod method);

}  // namespace sim
