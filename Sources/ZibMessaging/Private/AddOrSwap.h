// Puts an interceptor before a method of a host's delegate. Main thread.

#pragma once

#include "ZibMessaging/Private/Installation.h"
#include "ZibMessaging/Private/Interception.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

// Replaces the method that the delegate has, its own or an inherited one, which is then replaced
// for all subclasses; or adds it to the delegate's class, `visible`. The result says which. Leaves
// one line.
Installed addOrSwap(Row row, objc::id delegate, Class visible);
// The same, but a delegate without the method is left alone, without a line.
Installed swapIfPresent(Row row, objc::id delegate, Class visible);
// Whether the module has put an interceptor before the delegate's method, though another library
// may have put one before that since.
bool isIntercepted(Row row, objc::id delegate);

}  // namespace zib
