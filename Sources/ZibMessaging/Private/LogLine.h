// The module's information lines. Failures go to ZibLogger::error() as they are.

#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "ZibCoreBoundary/ZibLogger.h"

namespace zib {

inline void logLine(std::string_view line) { ZibLogger::shared().log(line); }

// Puts one line together from its parts, without an allocation where the line is short: most
// callbacks write one, on the app's main thread.
inline void logLine(std::string_view one, std::string_view two, std::string_view three = {},
                    std::string_view four = {}) {
  constexpr std::size_t shortLine = 768;
  const std::size_t size = one.size() + two.size() + three.size() + four.size();
  const auto write = [&](char* line) {
    char* end = std::copy(one.begin(), one.end(), line);
    end = std::copy(two.begin(), two.end(), end);
    end = std::copy(three.begin(), three.end(), end);
    std::copy(four.begin(), four.end(), end);
    ZibLogger::shared().log({line, size});
  };
  if (size <= shortLine) {
    std::array<char, shortLine> line;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    write(line.data());
  } else {
    write(std::string(size, ' ').data());
  }
}

}  // namespace zib
