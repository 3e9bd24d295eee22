#include "Recorder/Redaction.h"

#if defined(ZIB_CHECKS_SENDS)

#include <algorithm>
#include <array>

#include "ZibMessaging/Private/LinkSearch.h"
#include "ZibMessaging/Private/NotificationEvent.h"
#include "ZibPlatform/Foundation/Strings.h"

namespace zib::recorder {
namespace {

bool isBetween(char character, char first, char last) {
  return first <= character && character <= last;
}

// Hexadecimal digits stay such, and others do not become them: escapes are read by both.
char redactedCharacter(char character) {
  if (isBetween(character, '0', '9')) return '0';
  if (isBetween(character, 'a', 'f')) return 'a';
  if (isBetween(character, 'A', 'F')) return 'A';
  if (isBetween(character, 'a', 'z')) return 'x';
  if (isBetween(character, 'A', 'Z')) return 'X';
  return character;
}

// With its colon; empty where the text begins with none.
std::string_view schemeOf(std::string_view text) {
  const std::size_t end = text.find(':');
  if (end == std::string_view::npos || end == 0) return {};
  const bool isScheme = std::all_of(
      text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), [](char character) {
        return isBetween(character, 'a', 'z') || isBetween(character, 'A', 'Z') || character == '+';
      });
  return isScheme ? text.substr(0, end + 1) : std::string_view();
}

constexpr std::array knownTexts{noLinkText, testNotificationType};

}  // namespace

std::string redactedText(std::string_view text) {
  if (std::find(knownTexts.begin(), knownTexts.end(), text) != knownTexts.end()) {
    return std::string(text);
  }
  constexpr unsigned char firstBeyondASCII = 0x80;
  constexpr unsigned char firstOfCharacter = 0xC0;
  std::string result(schemeOf(text));
  for (const char character : text.substr(result.size())) {
    const auto code = static_cast<unsigned char>(character);
    if (code < firstBeyondASCII) {
      result += redactedCharacter(character);
    } else if (code >= firstOfCharacter) {
      result += "é";
    }
  }
  return result;
}

Value redacted(const Value& value) {
  if (const auto* const text = value.get<std::string>()) return redactedText(*text);
  if (const auto* const bytes = value.get<Bytes>()) return Bytes(bytes->size());
  if (const auto* const list = value.get<Array>()) {
    Array result;
    for (const Value& each : *list) result.push_back(redacted(each));
    return result;
  }
  if (const auto* const map = value.get<ValueMap>()) {
    ValueMap result;
    for (const auto& [key, member] : *map) result.append(key, redacted(member));
    return result;
  }
  return value;
}

}  // namespace zib::recorder

#endif
