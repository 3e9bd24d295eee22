// A core library for the examples: it prints what the module hands to it. A real one sends events
// to a server and keeps tokens; this one shows all that it has to implement.

#pragma once

#include "ZibCoreBoundary/ZibConfig.h"

// Once, before ZibMessaging::configure(), which asks the core for its configuration.
void installPrintingCore(ZibConfig config);
