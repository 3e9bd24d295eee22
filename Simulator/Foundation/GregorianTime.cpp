#include "Simulator/Foundation/GregorianTime.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace sim {
namespace {

using std::chrono::day;
using std::chrono::days;
using std::chrono::month;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr sys_days firstDay{year_month_day{year::min(), month{1}, day{1}}};
constexpr sys_days lastDay{year_month_day{year::max(), month{12}, day{31}}};

double secondsAt(sys_days date) {
  return static_cast<double>(seconds(date.time_since_epoch()).count());
}

// Takes a number of exactly `digits` digits, and the text that follows it, off the front.
bool take(std::string_view& text, std::size_t digits, std::string_view separator, int& number) {
  const char* end = text.data() + std::min(digits, text.size());
  const auto result = std::from_chars(text.data(), end, number);
  const bool isNumber = text.size() >= digits && result.ec == std::errc() && result.ptr == end &&
                        text.front() != '-' && text.substr(digits).starts_with(separator);
  if (isNumber) text.remove_prefix(digits + separator.size());
  return isNumber;
}

// Four digits, or more of them without a zero in front, and perhaps a minus sign.
bool takeYear(std::string_view& text, int& number) {
  const bool isNegative = text.starts_with('-');
  if (isNegative) text.remove_prefix(1);
  const std::size_t digits = text.find('-');
  if (digits == std::string_view::npos || digits < 4 || digits > 5) return false;
  if (!take(text, digits, "-", number)) return false;
  if (isNegative) number = -number;
  return true;
}

}  // namespace

std::optional<std::string> internetDateTime(double secondsSince1970) {
  const double whole = std::floor(secondsSince1970);
  // Written so that it is false for what is no number, too.
  if (!(whole >= secondsAt(firstDay) && whole < secondsAt(lastDay + days(1)))) return std::nullopt;
  const std::chrono::sys_seconds moment{seconds(static_cast<std::int64_t>(whole))};
  const auto midnight = std::chrono::floor<days>(moment);
  const year_month_day date(midnight);
  const std::chrono::hh_mm_ss time(moment - midnight);
  const int yearNumber = static_cast<int>(date.year());
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%s%04d-%02u-%02uT%02d:%02d:%02dZ",
                yearNumber < 0 ? "-" : "", std::abs(yearNumber),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  return std::string(text.data());
}

std::optional<double> secondsFrom(std::string_view text) {
  int yearNumber = 0, monthNumber = 0, dayNumber = 0, hour = 0, minute = 0, second = 0;
  const bool isForm = takeYear(text, yearNumber) && take(text, 2, "-", monthNumber) &&
                      take(text, 2, "T", dayNumber) && take(text, 2, ":", hour) &&
                      take(text, 2, ":", minute) && take(text, 2, "Z", second) && text.empty();
  if (!isForm || std::abs(yearNumber) > static_cast<int>(year::max())) return std::nullopt;
  const year_month_day date{year(yearNumber), month(static_cast<unsigned>(monthNumber)),
                            day(static_cast<unsigned>(dayNumber))};
  if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  return secondsAt(sys_days(date)) + hour * 3600 + minute * 60 + second;
}

}  // namespace sim
