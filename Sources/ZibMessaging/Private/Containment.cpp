#include "ZibMessaging/Private/Containment.h"

#include <exception>
#include <memory>
#include <utility>

#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibPlatform/Foundation/Exception.h"

namespace zib {

std::string describeHandledException() noexcept {
  if (auto description = describeHandledPlatformException()) return *std::move(description);
  try {
    throw;
  } catch (const std::exception& exception) {
    return exception.what();
  } catch (...) {
    return "an exception of a type of its own";
  }
}

bool containedCall(std::string_view operation, void (*call)(const void* work),
                   const void* work) noexcept {
  // Not a text of its own, which would cost each call that goes well.
  std::unique_ptr<std::string> description;
  try {
    call(work);
    return true;
  } catch (...) {
    description = std::make_unique<std::string>(describeHandledException());
  }
  reportContained(operation, *std::move(description));
  return false;
}

void reportContained(std::string_view operation, std::string description) noexcept {
  try {
    const std::string line = "ZibMessaging: stopped an exception in " + std::string(operation);
    ZibLogger::shared().error(line, Error{"ZibMessaging", 0, std::move(description), {}});
  } catch (...) {
    // The logger is what throws: there is nobody left to tell.
    return;
  }
}

}  // namespace zib
