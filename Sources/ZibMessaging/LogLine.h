// Log lines that are put together from parts.

#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "CoreBoundary/ZibLogger.h"

// Hands the core's logger one line, without an allocation where the line is short: most callbacks
// write one, on the app's main thread.
template <class... Parts>
void logLine(const Parts&... parts) {
  constexpr std::size_t shortLine = 768;
  const std::size_t size = (std::string_view(parts).size() + ...);
  const auto write = [&](char* line) {
    char* end = line;
    const auto append = [&](std::string_view part) {
      end = std::copy(part.begin(), part.end(), end);
    };
    (append(parts), ...);
    ZibLogger::shared().log({line, size});
  };
  if (size <= shortLine) {
    std::array<char, shortLine> line;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    write(line.data());
  } else {
    write(std::string(size, ' ').data());
  }
}
