// The failures that the remote push configuration finds itself. What the platform reports is passed
// on as it came.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "ZibPlatform/Foundation/Error.h"

// The indices are the codes of the platform's error objects: they stay.
enum class ZibPushError : std::uint8_t {
  invalidURL = 0,
  noData = 1,
  invalidPlist = 2,
  firebaseNotConfigured = 3,  // for hosts; the module never fails with it
};

namespace zib {

std::string_view errorDescription(ZibPushError error) noexcept;

// The same failure as a general error, whose native object is an NSError that carries nothing but
// the description; and back, if the error is one of these.
Error errorFrom(ZibPushError error);
std::optional<ZibPushError> pushErrorFrom(const Error& error) noexcept;

}  // namespace zib

template <>
struct std::hash<ZibPushError> {
  std::size_t operator()(ZibPushError error) const noexcept {
    return std::hash<std::size_t>()(static_cast<std::size_t>(error));
  }
};
