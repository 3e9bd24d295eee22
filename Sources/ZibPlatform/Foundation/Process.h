// Facts about the process: where its bundle lies, and which version of the system runs it.
// Any thread.

#pragma once

#include <string>

namespace zib {

// Empty when there is no main bundle.
std::string mainBundlePath();
// An app extension's bundle path ends with ".appex". Read anew at each call.
bool isAppExtension();
bool isSystemAtLeast(long major, long minor);

}  // namespace zib
