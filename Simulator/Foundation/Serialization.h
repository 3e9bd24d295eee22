// What Foundation's serialisers have in common.

#pragma once

#include <string>

#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/Foundation/CocoaError.h"
#include "Simulator/Foundation/FormatError.h"

namespace sim {

// What `make` gives, an Object; where it throws a FormatError, nil, and that is reported as the
// cause of `problem`.
template <class Make>
zib::objc::id madeOrReported(CocoaError code, const char* problem, zib::objc::id* error,
                             Make make) {
  try {
    return autoreleased(make());
  } catch (const FormatError& failure) {
    report(makeError(code, std::string(problem) + ": " + failure.what()), error);
    return nullptr;
  }
}

}  // namespace sim
