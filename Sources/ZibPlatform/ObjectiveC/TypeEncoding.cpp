#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

#include <cctype>

namespace zib::encoding {
namespace {

constexpr std::string_view qualifiers = "rnNoORV+-";

// The end of a quoted class name or of a bracketed structure name that starts at `at`.
std::size_t skipName(std::string_view types, std::size_t at) {
  if (types[at] == '"') {
    const std::size_t end = types.find('"', at + 1);
    return end == std::string_view::npos ? types.size() : end + 1;
  }
  const std::size_t end = types.find_first_of("=}", at);
  return end == std::string_view::npos ? types.size() : end;
}

char canonical(char type) {
  if (type == 'l') return 'q';
  if (type == 'L') return 'Q';
  return type;
}

}  // namespace

std::string normalised(std::string_view types) {
  std::string result;
  for (std::size_t at = 0; at < types.size();) {
    const char type = types[at];
    if (type == '"') {
      at = skipName(types, at);
    } else if (type == '{') {
      result.push_back(type);
      at = skipName(types, at + 1);
    } else {
      const bool isNoise = std::isdigit(static_cast<unsigned char>(type)) != 0 ||
                           qualifiers.find(type) != std::string_view::npos;
      if (!isNoise) result.push_back(canonical(type));
      ++at;
    }
  }
  return result;
}

}  // namespace zib::encoding
