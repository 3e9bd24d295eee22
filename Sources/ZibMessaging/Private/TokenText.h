// How tokens appear in log lines, before the "..." that ends each of them. A token is a credential:
// it is never logged whole.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zib {

inline constexpr std::string_view hexDigits = "0123456789abcdef";

// The first 20 characters.
std::string_view shownOf(std::string_view token) noexcept;

// The first 20 characters of a token in the form of hexText().
class ShownHexText {
 public:
  explicit ShownHexText(std::span<const std::uint8_t> token) noexcept {
    const auto shown = token.first(std::min(token.size(), characters_.size() / 2));
    char* end = characters_.data();
    for (const std::uint8_t byte : shown) {
      *end++ = hexDigits[byte >> 4U];
      *end++ = hexDigits[byte & 0xFU];
    }
    size_ = 2 * shown.size();
  }
  [[nodiscard]] std::string_view view() const noexcept {
    return std::string_view(characters_.data(), characters_.size()).substr(0, size_);
  }

 private:
  std::array<char, 20> characters_{};
  std::size_t size_ = 0;
};

// Each byte as two lowercase hexadecimal digits.
std::string hexText(std::span<const std::uint8_t> bytes);

}  // namespace zib
