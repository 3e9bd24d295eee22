#include "ZibMessaging/ZibPushError.h"

#include <array>
#include <string>

namespace zib {
namespace {

constexpr std::string_view domain = "ZibMessaging.ZibPushError";

// By index.
constexpr std::array<std::string_view, 4> descriptions{
    "Invalid push configuration URL",
    "No data received from server",
    "Invalid Firebase plist format",
    "Firebase is not configured",
};

}  // namespace

std::string_view errorDescription(ZibPushError error) noexcept {
  return descriptions[static_cast<std::size_t>(error)];
}

Error errorFrom(ZibPushError error) {
  return {std::string(domain),
          static_cast<std::int64_t>(error),
          std::string(errorDescription(error)),
          {}};
}

std::optional<ZibPushError> pushErrorFrom(const Error& error) noexcept {
  constexpr auto count = static_cast<std::int64_t>(descriptions.size());
  if (error.domain != domain || error.code < 0 || error.code >= count) return std::nullopt;
  return static_cast<ZibPushError>(error.code);
}

}  // namespace zib
