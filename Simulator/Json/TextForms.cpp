#include "Simulator/Json/TextForms.h"

#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>

#include "Simulator/Foundation/GregorianTime.h"

namespace sim {

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

}  // namespace sim
