#include "ZibMessaging/Private/Containment.h"

#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibPlatform/Foundation/Exception.h"

namespace zib {
namespace {

// What the exception that is being handled says of itself. On its own, like report(): a call that
// goes well saves no registers for them.
[[gnu::cold, gnu::noinline]] std::unique_ptr<std::string> describeHandledException() noexcept {
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

[[gnu::cold, gnu::noinline]] void report(const char* operation,
                                         std::unique_ptr<std::string> description) noexcept {
  try {
    const std::string line = std::string("ZibMessaging: stopped an exception in ") + operation;
    ZibLogger::shared().error(line, Error{"ZibMessaging", 0, *std::move(description), {}});
  } catch (...) {
    // The logger is what throws: there is nobody left to tell.
    return;
  }
}

}  // namespace

// Reported when the exception is no longer being handled: C++ runtimes end the process when the
// platform's comes on top of another.
bool containedCall(const char* operation, void (*call)(const void* work),
                   const void* work) noexcept {
  std::unique_ptr<std::string> description;
  try {
    call(work);
    return true;
  } catch (...) {
    description = describeHandledException();
  }
  report(operation, std::move(description));
  return false;
}

}  // namespace zib
