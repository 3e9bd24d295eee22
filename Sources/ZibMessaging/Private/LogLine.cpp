#include "ZibMessaging/Private/LogLine.h"

#include <algorithm>
#include <array>
#include <string>

#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/QuotedText.h"

namespace zib {
namespace {

using Parts = std::span<const LinePart>;

std::string escaped(Parts parts) {
  std::string line;
  for (const LinePart& part : parts) {
    if (part.isForeign()) {
      appendOneLine(line, part.text());
    } else {
      line.append(part.text());
    }
  }
  return line;
}

void write(Parts parts) {
  constexpr std::size_t shortLine = 768;
  std::array<char, shortLine> line;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  char* end = line.data();
  for (const LinePart& part : parts) {
    const std::string_view text = part.text();
    const auto room = static_cast<std::size_t>(line.data() + line.size() - end);
    if (text.size() > room || (part.isForeign() && !isOneLine(text))) {
      ZibLogger::shared().log(escaped(parts));
      return;
    }
    end = std::copy(text.begin(), text.end(), end);
  }
  ZibLogger::shared().log({line.data(), static_cast<std::size_t>(end - line.data())});
}

}  // namespace

void logLine(std::string_view line) noexcept {
  contained("ZibLogger.log", [&] { ZibLogger::shared().log(line); });
}

void logParts(std::span<const LinePart> parts) noexcept {
  contained("ZibLogger.log", [&] { write(parts); });
}

void logError(std::string_view line) noexcept { logError(line, std::nullopt); }

void logError(std::string_view line, const std::optional<Error>& error) noexcept {
  contained("ZibLogger.error", [&] { ZibLogger::shared().error(line, error); });
}

}  // namespace zib
