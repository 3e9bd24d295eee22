#include "ZibMessaging/Private/Containment.h"

#include <string>

#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibPlatform/Foundation/Strings.h"

namespace zib {

[[gnu::cold, gnu::noinline]] void reportStopped(const char* operation,
                                                const CaughtException& stopped) noexcept {
  try {
    const std::string line = joined({"ZibMessaging: stopped an exception in ", operation});
    ZibLogger::shared().error(line, Error{"ZibMessaging", 0, stopped.description(), {}});
  } catch (...) {
    // The logger is what throws: there is nobody left to tell.
    return;
  }
}

bool containedCall(const char* operation, void (*call)(const void* work),
                   const void* work) noexcept {
  return containedInPlace(operation, [&] { call(work); });
}

}  // namespace zib
