#include "Simulator/Scenario/ScenarioError.h"

#include <array>
#include <cstdio>

namespace sim {

std::string oneLine(std::string_view text) {
  constexpr unsigned char firstPrintable = 0x20;
  constexpr unsigned char deletion = 0x7F;
  std::string line;
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (code >= firstPrintable && code != deletion) {
      line += character;
      continue;
    }
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(code));
    line += escape.data();
  }
  return line;
}

}  // namespace sim
