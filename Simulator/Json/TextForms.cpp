#include "Simulator/Json/TextForms.h"

#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>

#include "Simulator/Foundation/GregorianTime.h"

namespace sim {
namespace {

// What the character that starts at `at` is; its size is 0 where it is shown as it is. Of the
// controls, C1 are C2 80 to C2 9F, and separators and directions E2 80 A8 to AE and E2 81 A6 to A9.
struct Control {
  std::size_t size = 0;
  unsigned code = 0;
};
Control controlAt(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t index) -> unsigned {
    return at + index < text.size() ? static_cast<unsigned char>(text[at + index]) : 0;
  };
  if (byte(0) < 0x20 || byte(0) == 0x7F) return {1, byte(0)};
  if (byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) < 0xA0) return {2, byte(1)};
  if (byte(0) != 0xE2) return {};
  const bool isSeparator = byte(1) == 0x80 && byte(2) >= 0xA8 && byte(2) <= 0xAE;
  const bool isIsolate = byte(1) == 0x81 && byte(2) >= 0xA6 && byte(2) <= 0xA9;
  if (!isSeparator && !isIsolate) return {};
  return {3, 0x2000U + ((byte(1) & 0x3FU) << 6U) + (byte(2) & 0x3FU)};
}

}  // namespace

std::optional<std::vector<std::uint8_t>> bytesFromHex(std::string_view hex) {
  const auto digit = [](char character) -> int {
    if (character >= '0' && character <= '9') return character - '0';
    const int lower = std::tolower(static_cast<unsigned char>(character));
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
  };
  if (hex.size() % 2 != 0) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  for (std::size_t at = 0; at < hex.size(); at += 2) {
    const int high = digit(hex[at]);
    const int low = digit(hex[at + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
  }
  return bytes;
}

std::string iso8601(double secondsSince1970) {
  constexpr double millisecondsPerSecond = 1000;
  const double rounded = std::round(secondsSince1970 * millisecondsPerSecond);
  const double seconds = std::floor(rounded / millisecondsPerSecond);
  auto text = internetDateTime(seconds);
  if (!text) return std::to_string(secondsSince1970);
  const int milliseconds = static_cast<int>(rounded - seconds * millisecondsPerSecond);
  if (milliseconds == 0) return *text;
  std::array<char, 8> fraction{};
  std::snprintf(fraction.data(), fraction.size(), ".%03d", milliseconds);
  return text->insert(text->size() - 1, fraction.data());
}

std::string oneLine(std::string_view text) {
  std::string line;
  for (std::size_t at = 0; at < text.size();) {
    const Control control = controlAt(text, at);
    if (control.size == 0) {
      line += text[at++];
      continue;
    }
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04x", control.code);
    line += escape.data();
    at += control.size;
  }
  return line;
}

}  // namespace sim
