#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

namespace zib::encoding {
namespace {

// Qualifiers, and the offsets of arguments.
constexpr std::string_view noise = "rnNoORV+-0123456789";

// The end of a quoted class name that starts at `at`.
std::size_t skipQuoted(std::string_view types, std::size_t at) {
  const std::size_t end = types.find('"', at + 1);
  return end == std::string_view::npos ? types.size() : end + 1;
}

// Where the members begin of a structure whose inside begins at `at`. Swift gives its structures no
// name: what could be nothing but members is.
std::size_t skipStructureName(std::string_view types, std::size_t at) {
  constexpr std::string_view membersAlone = "cCsSiIlLqQfdB@#:*^";
  const std::size_t end = types.find_first_of("={}", at);
  if (end == std::string_view::npos) return types.size();
  if (types[end] == '=') return end + 1;
  const std::string_view inside = types.substr(at, end - at);
  return inside.find_first_not_of(membersAlone) == std::string_view::npos ? at : end;
}

char canonical(char type) {
  switch (type) {
    case 'C':
      return 'c';
    case 'S':
      return 's';
    case 'I':
      return 'i';
    case 'l':
    case 'L':
    case 'Q':
      return 'q';
    default:
      return type;
  }
}

}  // namespace

std::string normalised(std::string_view types) {
  std::string result;
  for (std::size_t at = 0; at < types.size();) {
    const char type = types[at];
    if (type == '"') {
      at = skipQuoted(types, at);
    } else if (type == '{') {
      result.push_back(type);
      at = skipStructureName(types, at + 1);
    } else {
      const bool isOfBlock = type == '?' && result.ends_with('@');
      const bool isNoise = isOfBlock || noise.find(type) != std::string_view::npos;
      if (!isNoise) result.push_back(canonical(type));
      ++at;
    }
  }
  return result;
}

bool agree(std::string_view one, std::string_view other) {
  return normalised(one) == normalised(other);
}

}  // namespace zib::encoding
