// The failures that the remote push configuration finds itself. What the platform reports is passed
// on as it came.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "ZibPlatform/Foundation/Error.h"

class ZibPushError {
 public:
  // These are the codes of the platform's error objects: they stay.
  enum Code : std::uint8_t {
    invalidURL = 0,
    noData = 1,
    invalidPlist = 2,
    firebaseNotConfigured = 3,  // for hosts; the module never fails with it
  };

  // NOLINTBEGIN(google-explicit-constructor): an error is its code.
  constexpr ZibPushError(Code code) noexcept : code_(code) {}
  constexpr operator Code() const noexcept { return code_; }
  // NOLINTEND(google-explicit-constructor)

  // For a code that no case has, too.
  [[nodiscard]] std::string_view errorDescription() const noexcept;

 private:
  Code code_;
};

namespace zib {

// The same failure as a general error, whose native object is an NSError that carries nothing but
// the description; and back, if the error is one of these.
Error errorFrom(ZibPushError error) noexcept;
std::optional<ZibPushError> pushErrorFrom(const Error& error) noexcept;

}  // namespace zib

template <>
struct std::hash<ZibPushError> {
  std::size_t operator()(ZibPushError error) const noexcept {
    return std::hash<std::size_t>()(static_cast<std::size_t>(error));
  }
};
