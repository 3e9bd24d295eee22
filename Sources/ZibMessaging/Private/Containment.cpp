#include "ZibMessaging/Private/Containment.h"

#include <exception>

#include "ZibCoreBoundary/ZibLogger.h"

namespace zib {

std::string describeHandledException() noexcept {
  try {
    throw;
  } catch (const std::exception& exception) {
    return exception.what();
  } catch (...) {
    return "an exception of the platform, or of a type of its own";
  }
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
