#include "Simulator/Foundation/Base64.h"

namespace sim {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view whiteSpace = " \t\r\n";

}  // namespace

std::string base64From(std::span<const std::uint8_t> bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const auto byte = [&](std::size_t index) -> unsigned {
      return index < bytes.size() ? bytes[index] : 0U;
    };
    const unsigned group = byte(at) << 16U | byte(at + 1) << 8U | byte(at + 2);
    text.push_back(alphabet[group >> 18U]);
    text.push_back(alphabet[group >> 12U & 63U]);
    text.push_back(at + 1 < bytes.size() ? alphabet[group >> 6U & 63U] : '=');
    text.push_back(at + 2 < bytes.size() ? alphabet[group & 63U] : '=');
  }
  return text;
}

std::optional<zib::Bytes> bytesFromBase64(std::string_view text) {
  zib::Bytes bytes;
  bytes.reserve(text.size() / 4 * 3);
  unsigned group = 0;
  std::size_t digits = 0;
  std::size_t padding = 0;
  for (const char character : text) {
    if (whiteSpace.find(character) != std::string_view::npos) continue;
    if (character == '=') {
      ++padding;
      continue;
    }
    const std::size_t digit = alphabet.find(character);
    if (digit == std::string_view::npos || padding > 0) return std::nullopt;
    group = group << 6U | static_cast<unsigned>(digit);
    // Of each four digits, the second, third and fourth complete a byte.
    const std::size_t place = digits++ % 4;
    if (place > 0) bytes.push_back(static_cast<std::uint8_t>(group >> (6U - 2U * place) & 0xFFU));
  }
  const bool isWhole = (digits + padding) % 4 == 0 && padding <= 2;
  return isWhole ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace sim
