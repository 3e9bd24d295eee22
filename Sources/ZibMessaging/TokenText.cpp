#include "ZibMessaging/TokenText.h"

#include <algorithm>

#include "Platform/Strings.h"

namespace {

// Two characters for each byte.
void writeHex(std::span<const std::uint8_t> bytes, char* out) noexcept {
  constexpr std::string_view digits = "0123456789abcdef";
  for (const std::uint8_t byte : bytes) {
    *out++ = digits[byte >> 4U];
    *out++ = digits[byte & 0xFU];
  }
}

}  // namespace

std::string_view shownOf(std::string_view token) noexcept {
  constexpr std::size_t shown = 20;
  return zib::firstCharacters(token, shown);
}

ShownHexText::ShownHexText(std::span<const std::uint8_t> token) noexcept {
  const auto shown = token.first(std::min(token.size(), characters_.size() / 2));
  writeHex(shown, characters_.data());
  size_ = 2 * shown.size();
}

std::string hexText(std::span<const std::uint8_t> bytes) {
  std::string text(2 * bytes.size(), '\0');
  writeHex(bytes, text.data());
  return text;
}
