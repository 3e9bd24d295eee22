#include "ZibMessaging/QuotedText.h"

namespace {

// The control characters that have a name of one letter.
constexpr char letterOf(char character) {
  switch (character) {
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    case '\0':
      return '0';
    default:
      return '\0';
  }
}

bool isControl(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 || code == 0x7F;
}

void appendCode(std::string& line, char character) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto code = static_cast<unsigned char>(character);
  line.append("\\u{").append({digits[code >> 4U], digits[code & 0xFU], '}'});
}

}  // namespace

void appendQuoted(std::string& line, std::string_view text) {
  line.push_back('"');
  for (const char character : text) {
    if (character == '"' || character == '\\') {
      line.append({'\\', character});
    } else if (letterOf(character) != '\0') {
      line.append({'\\', letterOf(character)});
    } else if (isControl(character)) {
      appendCode(line, character);
    } else {
      line.push_back(character);
    }
  }
  line.push_back('"');
}
