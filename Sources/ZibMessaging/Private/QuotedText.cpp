#include "ZibMessaging/Private/QuotedText.h"

#include <array>
#include <utility>

#include "ZibPlatform/Foundation/Strings.h"

namespace zib {
namespace {

// The ones with a form of their own. Line and paragraph separator break a line for many readers.
constexpr std::array<std::pair<std::string_view, std::string_view>, 8> escapes{{
    {"\"", "\\\""},
    {"\\", "\\\\"},
    {"\n", "\\n"},
    {"\r", "\\r"},
    {"\t", "\\t"},
    {std::string_view("\0", 1), "\\0"},
    {"\u2028", "\\u{2028}"},
    {"\u2029", "\\u{2029}"},
}};

// The code of a control character, C0 (with DEL) or C1, which has two bytes; 0 for any other.
unsigned controlCode(std::string_view character) {
  const auto last = static_cast<unsigned char>(character.back());
  const bool isC0 = character.size() == 1 && (last < 0x20 || last == 0x7F);
  const bool isC1 = character.size() == 2 && character.front() == '\xC2' && last < 0xA0;
  return isC0 || isC1 ? last : 0;
}

void appendEscaped(std::string& line, std::string_view character) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  for (const auto& [escaped, form] : escapes) {
    if (character == escaped) {
      line.append(form);
      return;
    }
  }
  if (const unsigned code = controlCode(character); code != 0) {
    line.append("\\u{").append({digits[code >> 4U], digits[code & 0xFU], '}'});
  } else {
    line.append(character);
  }
}

}  // namespace

void appendQuoted(std::string& line, std::string_view text) {
  line.push_back('"');
  while (!text.empty()) {
    const std::string_view character = firstCharacters(text, 1);
    appendEscaped(line, character);
    text.remove_prefix(character.size());
  }
  line.push_back('"');
}

}  // namespace zib
