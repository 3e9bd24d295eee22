// Text that is known at compile time and can be a template argument: the name of a selector, of a
// class, of a payload key, or a type encoding.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace zib {

template <std::size_t Size>
struct FixedString {
  std::array<char, Size + 1> characters{};

  constexpr FixedString() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): literals are meant to convert.
  constexpr FixedString(const char (&literal)[Size + 1]) {
    std::copy_n(literal, Size + 1, characters.begin());
  }

  [[nodiscard]] constexpr std::string_view view() const { return {characters.data(), Size}; }
  [[nodiscard]] constexpr const char* data() const { return characters.data(); }
};

template <std::size_t SizeWithNul>
FixedString(const char (&)[SizeWithNul]) -> FixedString<SizeWithNul - 1>;

template <std::size_t One, std::size_t Other>
constexpr FixedString<One + Other> operator+(const FixedString<One>& one,
                                             const FixedString<Other>& other) {
  FixedString<One + Other> result;
  std::copy_n(one.characters.begin(), One, result.characters.begin());
  std::copy_n(other.characters.begin(), Other + 1, result.characters.begin() + One);
  return result;
}

}  // namespace zib
