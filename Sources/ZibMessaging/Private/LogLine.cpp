#include "ZibMessaging/Private/LogLine.h"

#include <algorithm>
#include <array>
#include <string>

#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/QuotedText.h"

namespace zib {
namespace {

using Parts = std::array<const LinePart*, 4>;

bool areOneLine(const Parts& parts) noexcept {
  return std::all_of(parts.begin(), parts.end(), [](const LinePart* part) {
    return !part->isForeign() || isOneLine(part->text());
  });
}

std::string escaped(const Parts& parts) {
  std::string line;
  for (const LinePart* part : parts) {
    if (part->isForeign()) {
      appendOneLine(line, part->text());
    } else {
      line.append(part->text());
    }
  }
  return line;
}

void write(const Parts& parts) {
  constexpr std::size_t shortLine = 768;
  std::size_t size = 0;
  for (const LinePart* part : parts) size += part->text().size();
  if (size > shortLine || !areOneLine(parts)) {
    ZibLogger::shared().log(escaped(parts));
    return;
  }
  std::array<char, shortLine> line;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  char* end = line.data();
  for (const LinePart* part : parts) {
    end = std::copy(part->text().begin(), part->text().end(), end);
  }
  ZibLogger::shared().log({line.data(), size});
}

}  // namespace

void logLine(std::string_view line) noexcept {
  contained("ZibLogger.log", [&] { ZibLogger::shared().log(line); });
}

void logLine(const LinePart& one, const LinePart& two, const LinePart& three,
             const LinePart& four) noexcept {
  contained("ZibLogger.log", [&] { write({&one, &two, &three, &four}); });
}

void logError(std::string_view line, const std::optional<Error>& error) noexcept {
  contained("ZibLogger.error", [&] { ZibLogger::shared().error(line, error); });
}

}  // namespace zib
