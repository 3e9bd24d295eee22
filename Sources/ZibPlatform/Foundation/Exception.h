// What was thrown, of whatever kind, beyond the catch block that stopped it.
//
// Stops without a word: what the core is to hear of goes through the module's containment.

#pragma once

#include <memory>
#include <string>

#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

struct CaughtException {
  // The one that the caller's catch block is handling.
  static std::unique_ptr<CaughtException> handled() noexcept;

  // An NSException's name and reason, or what could be told of them. After the catch block: the
  // platform's is asked and may raise, and C++ runtimes end the process when the platform's
  // exception comes while another is handled.
  [[nodiscard]] std::string description() const;

  // The platform's, or nil, of which there is the text.
  Object platforms;
  std::string text;
};

// None where nothing was thrown.
using Caught = std::unique_ptr<CaughtException>;

// What the work throws. The handler is in the caller's own code, so that what goes well costs
// nothing.
template <class Work>
Caught caughtFrom(const Work& work) noexcept {
  try {
    work();
  } catch (...) {
    return CaughtException::handled();
  }
  return nullptr;
}

}  // namespace zib
