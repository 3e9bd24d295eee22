// A value, or the error that there is instead: std::expected's shape, which C++20 lacks.
//
// Not for what is merely absent: a look-up that finds nothing gives an optional.

#pragma once

#include <optional>
#include <utility>

#include "ZibPlatform/Foundation/Error.h"

namespace zib {

template <class T>
class Result {
 public:
  // NOLINTBEGIN(google-explicit-constructor): a result is either of them.
  Result(T value) : value_(std::move(value)) {}
  Result(Error error) : error_(std::move(error)) {}
  // NOLINTEND(google-explicit-constructor)

  explicit operator bool() const noexcept { return !error_; }
  // Only when there is a value.
  const T& operator*() const { return value_; }
  T& operator*() { return value_; }
  const T* operator->() const { return &value_; }
  // Only when there is none.
  [[nodiscard]] const Error& error() const& { return *error_; }
  [[nodiscard]] Error&& error() && { return *std::move(error_); }
  // None when there is a value.
  [[nodiscard]] const std::optional<Error>& failure() const noexcept { return error_; }

 private:
  // Empty beside an error. Not a variant, whose code is several times as large.
  T value_{};
  std::optional<Error> error_;
};

}  // namespace zib
