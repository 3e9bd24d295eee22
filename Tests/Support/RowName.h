// The name of a parameterised test: that of its row, which is a structure with a `name`, a number
// or a text, or something that a function `nameOf` names.

#pragma once

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace test {

inline constexpr auto rowName = [](const auto& info) -> std::string {
  using Row = std::remove_cvref_t<decltype(info.param)>;
  if constexpr (requires { info.param.name; }) {
    return info.param.name;
  } else if constexpr (std::is_arithmetic_v<Row>) {
    return std::to_string(info.param);
  } else if constexpr (std::is_convertible_v<Row, std::string>) {
    return info.param;
  } else {
    return nameOf(info.param);
  }
};

}  // namespace test
