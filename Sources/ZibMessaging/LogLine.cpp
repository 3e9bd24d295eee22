#include "ZibMessaging/LogLine.h"

#include <algorithm>
#include <array>
#include <string>

#include "CoreBoundary/ZibLogger.h"

void logLine(std::initializer_list<std::string_view> parts) {
  constexpr std::size_t shortLine = 768;
  std::size_t size = 0;
  for (const std::string_view part : parts) size += part.size();
  std::array<char, shortLine> inPlace;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  std::string spilled;
  if (size > shortLine) spilled.resize(size);
  char* const line = size > shortLine ? spilled.data() : inPlace.data();
  char* end = line;
  for (const std::string_view part : parts) end = std::copy(part.begin(), part.end(), end);
  ZibLogger::shared().log({line, size});
}
