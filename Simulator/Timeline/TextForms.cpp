#include "Simulator/Timeline/TextForms.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <cmath>
#include <cstdio>

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
