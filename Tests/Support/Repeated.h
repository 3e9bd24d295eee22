// Large and deep documents from their pieces.

#pragma once

#include <string>
#include <string_view>

namespace test {

inline constexpr std::size_t tenMegabytes = std::size_t{10} << 20U;
inline constexpr std::size_t hundredThousand = 100'000;

inline std::string repeated(std::string_view text, std::size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  for (std::size_t index = 0; index < count; ++index) result += text;
  return result;
}

}  // namespace test
