#include "Simulator/Timeline/TextForms.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace sim {
namespace {

constexpr std::string_view base64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string base64(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    std::uint32_t bits = 0;
    for (std::size_t index = 0; index < 3; ++index) {
      bits = (bits << 8U) | (index < count ? bytes[at + index] : 0U);
    }
    for (std::size_t index = 0; index < 4; ++index) {
      text.push_back(index <= count ? base64Digits[(bits >> (18U - 6U * index)) & 0x3FU] : '=');
    }
  }
  return text;
}

std::optional<std::string> bytesFromBase64(std::string_view text) {
  constexpr std::size_t groupSize = 4;
  if (text.size() % groupSize != 0) return std::nullopt;
  const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  std::string bytes;
  bytes.reserve(text.size() / groupSize * 3);
  std::uint32_t bits = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isPadding = at >= text.size() - padding;
    const std::size_t digit = isPadding ? 0 : base64Digits.find(text[at]);
    if (digit == std::string_view::npos) return std::nullopt;
    bits = bits << 6U | static_cast<std::uint32_t>(digit);
    if (at % groupSize != groupSize - 1) continue;
    for (const unsigned shift : {16U, 8U, 0U}) bytes.push_back(static_cast<char>(bits >> shift));
    bits = 0;
  }
  bytes.resize(bytes.size() - padding);
  return bytes;
}

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
  using std::chrono::milliseconds;
  constexpr double secondsInTenThousandYears = 3.2e11;
  if (!(std::abs(secondsSince1970) < secondsInTenThousandYears)) {
    return std::to_string(secondsSince1970);
  }
  const std::chrono::sys_time<milliseconds> time(
      milliseconds(std::llround(secondsSince1970 * 1000)));
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  std::array<char, 64> text{};
  const int length = std::snprintf(
      text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
      static_cast<int>(clock.seconds().count()));
  std::string result(text.data(), static_cast<std::size_t>(length));
  if (const auto fraction = clock.subseconds().count(); fraction != 0) {
    std::array<char, 8> digits{};
    std::snprintf(digits.data(), digits.size(), ".%03d", static_cast<int>(fraction));
    result += digits.data();
  }
  return result + "Z";
}

}  // namespace sim
