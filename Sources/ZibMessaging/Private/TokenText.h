// How tokens appear in log lines, before the "..." that ends each of them. A token is a credential:
// it is never logged whole.

#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace zib {

// The first 20 characters.
std::string_view shownOf(std::string_view token) noexcept;

// The first 20 characters of a token whose bytes are written as two lowercase hexadecimal digits
// each.
class ShownHexText {
 public:
  explicit ShownHexText(std::span<const std::uint8_t> token) noexcept
      : size_(2 * std::min(token.size(), shownBytes)) {
    std::array<std::uint32_t, wordsShown> words{};
    if (token.size() >= sizeof(words)) {
      std::memcpy(words.data(), token.data(), sizeof(words));
    } else {
      std::copy(token.begin(), token.end(), reinterpret_cast<std::uint8_t*>(words.data()));
    }
    std::transform(words.begin(), words.end(), digits_.begin(), &digitsOf);
  }
  [[nodiscard]] std::string_view view() const noexcept {
    return {reinterpret_cast<const char*>(digits_.data()), size_};
  }

 private:
  static constexpr std::size_t shownBytes = 10;
  static constexpr std::size_t wordsShown = 3;

  // Of four bytes at once, in the order in which they lie in memory.
  static constexpr std::uint64_t digitsOf(std::uint32_t bytes) noexcept {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::uint64_t each = 0x0101010101010101U;
    std::uint64_t apart = bytes;
    apart = (apart | apart << 16U) & 0x0000FFFF0000FFFFU;
    apart = (apart | apart << 8U) & 0x00FF00FF00FF00FFU;
    const std::uint64_t digits = ((apart >> 4U) | (apart << 8U)) & (each * 0x0FU);
    const std::uint64_t letters = ((digits + each * 6U) >> 4U) & each;
    return digits + each * '0' + letters * ('a' - '0' - 10);
  }

  std::size_t size_;
  std::array<std::uint64_t, wordsShown> digits_;
};

}  // namespace zib
