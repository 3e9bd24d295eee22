// Facts about the process: where its bundle lies, and which version of the system runs it.
// Any thread.

#pragma once

#include <string>

namespace zib {

// Empty when there is no main bundle.
std::string mainBundlePath();
// An app extension's bundle path ends with ".appex". Read anew at each call.
bool isAppExtension();
// A process of unit tests that no app hosts: XCTest is loaded, and the main bundle has no
// identifier. Asking it for the notification centre would end it.
bool isTestProcessWithoutApp();
bool isSystemAtLeast(long major, long minor);

}  // namespace zib
