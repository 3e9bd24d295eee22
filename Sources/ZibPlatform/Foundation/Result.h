// A value, or the error that there is instead: std::expected's shape, which C++20 lacks.
//
// Not for what is merely absent: a look-up that finds nothing gives an optional.

#pragma once

#include <utility>
#include <variant>

#include "ZibPlatform/Foundation/Error.h"

namespace zib {

template <class T>
class Result {
 public:
  // NOLINTBEGIN(google-explicit-constructor): a result is either of them.
  Result(T value) : storage_(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : storage_(std::in_place_index<1>, std::move(error)) {}
  // NOLINTEND(google-explicit-constructor)

  explicit operator bool() const noexcept { return storage_.index() == 0; }
  // Only when there is a value.
  const T& operator*() const { return std::get<0>(storage_); }
  const T* operator->() const { return &std::get<0>(storage_); }
  // Only when there is none.
  [[nodiscard]] const Error& error() const { return std::get<1>(storage_); }

 private:
  std::variant<T, Error> storage_;
};

}  // namespace zib
