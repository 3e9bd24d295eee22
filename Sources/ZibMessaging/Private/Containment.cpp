#include "ZibMessaging/Private/Containment.h"

#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibPlatform/Foundation/Exception.h"
#include "ZibPlatform/Foundation/Strings.h"

namespace zib {

[[gnu::cold, gnu::noinline]] Stopped describeHandledException() noexcept {
  if (auto description = describeHandledPlatformException()) return description;
  try {
    throw;
  } catch (const std::exception& exception) {
    return std::make_unique<std::string>(exception.what());
  } catch (...) {
    return std::make_unique<std::string>("an exception of a type of its own");
  }
}

[[gnu::cold, gnu::noinline]] void reportStopped(const char* operation, Stopped stopped) noexcept {
  try {
    const std::string line = joined({"ZibMessaging: stopped an exception in ", operation});
    ZibLogger::shared().error(line, Error{"ZibMessaging", 0, *std::move(stopped), {}});
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
