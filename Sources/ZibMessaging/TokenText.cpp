#include "ZibMessaging/TokenText.h"

#include "Platform/Strings.h"

std::string tokenDisplay(std::string_view token) {
  constexpr std::size_t shown = 20;
  return std::string(zib::firstCharacters(token, shown)).append("...");
}

std::string hexText(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  text.reserve(2 * bytes.size());
  for (const std::uint8_t byte : bytes) {
    text.push_back(digits[byte >> 4U]);
    text.push_back(digits[byte & 0xFU]);
  }
  return text;
}
