// What the platform's Foundation does and GNUstep's lacks or gets wrong, put into the running
// object runtime under Foundation's own names, and the facts about the device that it answers with.
//
// Not a way to call Foundation: that goes through the runtime, as the module does it.

#pragma once

#include <functional>
#include <optional>
#include <string>

#include "ZibPlatform/Foundation/Structures.h"

namespace sim::foundation {

// Once at start, before other threads send messages, and after setSystemVersion() where it is not
// the default: what a version lacks is not there. Calling it again does nothing.
void install();
// The part that is the same on every version, for a process that is copied before it is known.
void prepare();

// The setters below may be called at any time, from any thread.

void setMainBundlePath(std::string path);
// None is a process that was started without an app.
void setMainBundleIdentifier(std::optional<std::string> identifier);
void setSystemVersion(long major, long minor);
zib::OperatingSystemVersion systemVersion();
// The wall clock, in seconds since 1970. It is called on every thread that asks for the time.
void setClock(std::function<double()> now);
// The user's Documents directory; none means that the file manager knows of none.
void setDocumentsDirectory(std::optional<std::string> path);

}  // namespace sim::foundation
