#include "ZibMessaging/Private/LogLine.h"

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
  std::size_t size = 0;
  for (const LinePart& part : parts) {
    const std::string_view text = part.text();
    if (text.size() > line.size() - size || (part.isForeign() && !isOneLine(text))) {
      ZibLogger::shared().log(escaped(parts));
      return;
    }
    size += text.copy(line.data() + size, text.size());
  }
  ZibLogger::shared().log({line.data(), size});
}

}  // namespace

void logLine(std::string_view line) noexcept {
  containedInPlace("ZibLogger.log", [&] { ZibLogger::shared().log(line); });
}

void logParts(std::span<const LinePart> parts) noexcept {
  containedInPlace("ZibLogger.log", [&] { write(parts); });
}

void logError(std::string_view line) noexcept { logError(line, std::nullopt); }

void logError(std::string_view line, const std::optional<Error>& error) noexcept {
  contained("ZibLogger.error", [&] { ZibLogger::shared().error(line, error); });
}

}  // namespace zib
