// Message sending with the exact type of the method.
//
// A message to nil gives R{}. Not noexcept: an unknown selector, and any method, can throw the
// platform's exception, which unwinds C++ frames.
//
// A debug build of the module checks each send against the type encoding of the method that it
// reaches, and a disagreement ends the process with a message that names the class, the selector
// and both types: a wrong cast here corrupts the stack on a phone and shows nowhere else.

#pragma once

#include <type_traits>

#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Selector.h"
#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

namespace zib {

// Whether the module was built to check its sends. A fact of the library: hosts that are built in
// another way than it share the function templates below with it.
extern const bool sendsAreChecked;

// Ends the process unless `types` and the method that `receiver` answers `selector` with agree.
// Methods that the receiver only forwards cannot be checked and pass.
void checkSend(objc::id receiver, Selector selector, const char* types);

template <class Result, class... Arguments>
Result send(objc::id receiver, Selector selector, Arguments... arguments) {
  static_assert(std::is_void_v<Result> || std::is_scalar_v<Result>,
                "a structure is returned in another way on each architecture");
  if (receiver == nullptr) return Result();
  if (sendsAreChecked) {
    checkSend(receiver, selector,
              encoding::Method<Result(objc::id, objc::SEL, Arguments...)>::value.data());
  }
  using Function = Result(objc::id, objc::SEL, Arguments...);
  return objc::functionFor<Function>(receiver, selector.raw())(receiver, selector.raw(),
                                                               arguments...);
}

// Calls a saved or looked-up implementation as the method that it is. `function` is not nil.
template <class Result, class... Arguments>
Result callImplementation(objc::IMP function, objc::id receiver, Selector selector,
                          Arguments... arguments) {
  using Function = Result(objc::id, objc::SEL, Arguments...);
  return objc::functionCast<Function*>(function)(receiver, selector.raw(), arguments...);
}

}  // namespace zib
