// The floor of each case: code written by hand for that case alone, on the same runtime, which
// hands the core the same lines and the same fields, forwards alike, and does nothing else.
//
// A floor keeps what the contract asks of the module: fields that several threads may read, strings
// only where they are strings, links parsed by the platform, completions passed on by a wrapper,
// the delegate kept until its own method has run. It does without what is for cases that a
// benchmark does not have: several intercepted classes, hosts that call super, exceptions of hosts
// and cores.

#pragma once

#include <functional>
#include <string_view>

#include "Benchmarks/Sink.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace bench::floor {

// What a first configure() comes to: the two classes, the seven methods of the host's class, the
// delegates and the deferred look at Firebase.
void configure();

FlatEvent eventOf(zib::objc::id userInfo, std::string_view eventType);
bool handleNotificationURL(zib::objc::id userInfo);
void setURLDelegate(std::function<bool(zib::objc::id url)> urlDelegate);

}  // namespace bench::floor
