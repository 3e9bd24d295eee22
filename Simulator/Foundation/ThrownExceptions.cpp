// Exceptions that outlive the autorelease pools that they unwind, as on the phone, whose runtime
// retains what is thrown. GCC's does not: whoever catches one beyond its pool would have a freed
// object in hand.

#include <dlfcn.h>

#include <cstdlib>

#include "Simulator/Foundation/Installers.h"
#include "ZibPlatform/ObjectiveC/Native.h"

extern "C" {

// Takes the place of the runtime's function, for all that throws.
[[noreturn]] void objc_exception_throw(zib::objc::id exception);

void objc_exception_throw(zib::objc::id exception) {
  using Throw = void (*)(zib::objc::id);
  static const auto throwAsTheRuntime =
      reinterpret_cast<Throw>(dlsym(RTLD_NEXT, "objc_exception_throw"));
  zib::objc::retain(exception);
  throwAsTheRuntime(exception);
  std::abort();
}
}

namespace sim {

// From its call on nothing changes: that it is called links the function above.
void foundation::installThrownExceptions() {}

}  // namespace sim
