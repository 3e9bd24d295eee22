#include "ZibMessaging/ZibPushError.h"

#include <array>
#include <string>

#include "ZibMessaging/Private/Containment.h"

namespace {

constexpr std::string_view domain = "ZibMessaging.ZibPushError";

// By code.
constexpr std::array<std::string_view, 4> descriptions{
    "Invalid push configuration URL",
    "No data received from server",
    "Invalid Firebase plist format",
    "Firebase is not configured",
};

}  // namespace

std::string_view ZibPushError::errorDescription() const noexcept {
  return code_ < descriptions.size() ? descriptions[code_] : "Unknown push configuration error";
}

namespace zib {

Error errorFrom(ZibPushError error) noexcept {
  Error result;
  contained("errorFrom", [&] {
    result = {std::string(domain), error, std::string(error.errorDescription()), {}};
  });
  return result;
}

std::optional<ZibPushError> pushErrorFrom(const Error& error) noexcept {
  constexpr auto count = static_cast<std::int64_t>(descriptions.size());
  if (error.domain != domain || error.code < 0 || error.code >= count) return std::nullopt;
  return static_cast<ZibPushError::Code>(error.code);
}

}  // namespace zib
