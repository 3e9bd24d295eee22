#include "ZibMessaging/Private/TokenText.h"

#include "ZibPlatform/Foundation/Strings.h"

namespace zib {

std::string_view shownOf(std::string_view token) noexcept {
  constexpr std::size_t shown = 20;
  return firstCharacters(token, shown);
}

std::string hexText(std::span<const std::uint8_t> bytes) {
  std::string text;
  text.reserve(2 * bytes.size());
  for (const std::uint8_t byte : bytes) {
    text.push_back(hexDigits[byte >> 4U]);
    text.push_back(hexDigits[byte & 0xFU]);
  }
  return text;
}

}  // namespace zib
