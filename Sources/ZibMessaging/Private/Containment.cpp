#include "ZibMessaging/Private/Containment.h"

#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibPlatform/Foundation/Exception.h"

namespace zib {

[[gnu::cold, gnu::noinline]] Stopped describeHandledException() noexcept {
  if (auto description = describeHandledPlatformException()) {
    return std::make_unique<std::string>(*std::move(description));
  }
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
    const std::string line = std::string("ZibMessaging: stopped an exception in ") + operation;
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
