// The name of a parameterised test: that of its row, which is a structure with a `name`.

#pragma once

#include <gtest/gtest.h>

#include <string>

namespace test {

inline constexpr auto rowName = [](const auto& info) { return std::string(info.param.name); };

}  // namespace test
