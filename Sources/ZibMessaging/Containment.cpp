#include "ZibMessaging/Containment.h"

#include <exception>
#include <string>

#include "CoreBoundary/ZibLogger.h"

namespace {

std::string describeCurrentException() {
  try {
    throw;
  } catch (const std::exception& exception) {
    return exception.what();
  } catch (...) {
    return "an exception of the platform, or of a type of its own";
  }
}

}  // namespace

void reportContained(std::string_view operation) noexcept {
  try {
    const std::string line = "ZibMessaging: stopped an exception in " + std::string(operation);
    ZibLogger::shared().error(line, zib::Error{"ZibMessaging", 0, describeCurrentException(), {}});
  } catch (...) {
    // The logger is what throws: there is nobody left to tell.
    return;
  }
}
