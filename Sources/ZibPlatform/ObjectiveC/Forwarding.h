// What an object does with a message that its class has no method for: it names another object, or
// takes the message as an invocation, or does not answer.

#pragma once

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Selector.h"

namespace zib {

// A function to call as a method, and the object to call it on; or none.
struct Destination {
  objc::IMP implementation = nullptr;
  objc::id receiver = nullptr;
};

// What the class does with a selector that it lacks, to be saved before it gets a method for it.
// Nil where the runtime makes such a function for each call.
objc::IMP forwarderOf(Class cls, Selector selector);

// Where a message goes that the object's class had no method for, which may be another place each
// time; none when the object does not answer it now. `forwarder` is what forwarderOf() gave. Good
// for one call, within the current autorelease pool.
Destination forwardedTo(objc::id object, Selector selector, objc::IMP forwarder);

// The same of an object that did not answer the message when its class got a method for it, and has
// said yes ever since: to a target that it names by now. None for one that takes invocations, which
// says yes whether or not anybody would take this one.
Destination namedByNow(objc::id object, Selector selector);

}  // namespace zib
