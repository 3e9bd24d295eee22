// Why bytes could not be read, or a value not be written, in words for a developer.
//
// Only inside Simulator/Foundation: what the platform's callers get is an NSError (CocoaError.h).

#pragma once

#include <stdexcept>

namespace sim {

class FormatError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace sim
