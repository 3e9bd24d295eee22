#include "ZibMessaging/Private/QuotedText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include "ZibPlatform/Foundation/Strings.h"

namespace zib {
namespace {

using Escape = std::pair<std::string_view, std::string_view>;

constexpr std::array<Escape, 2> quotation{{{"\"", "\\\""}, {"\\", "\\\\"}}};

// The controls with a form of their own. Line and paragraph separator break a line for many
// readers.
constexpr std::array<Escape, 6> controls{{
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

template <class Escapes>
bool appendIfAmong(const Escapes& escapes, std::string& line, std::string_view character) {
  const auto found = std::find_if(escapes.begin(), escapes.end(),
                                  [&](const Escape& escape) { return escape.first == character; });
  if (found == escapes.end()) return false;
  line.append(found->second);
  return true;
}

void appendEscaped(std::string& line, std::string_view character) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  if (appendIfAmong(controls, line, character)) return;
  if (const unsigned code = controlCode(character); code != 0) {
    line.append("\\u{").append({digits[code >> 4U], digits[code & 0xFU], '}'});
  } else {
    line.append(character);
  }
}

template <class Use>
void forEachCharacter(std::string_view text, Use use) {
  while (!text.empty()) {
    const std::string_view character = firstCharacters(text, 1);
    use(character);
    text.remove_prefix(character.size());
  }
}

constexpr std::uint64_t each = 0x0101010101010101U;
constexpr std::uint64_t allSpaces = each * 0x20U;
constexpr std::uint64_t highest = each * 0x80U;

// Eight bytes at once: the highest bit of one is set if one is below a space, is DEL, or is no
// ASCII.
std::uint64_t suspicions(std::uint64_t bytes) noexcept {
  return (bytes - allSpaces) | (bytes + each) | bytes;
}

}  // namespace

bool isOneLine(std::string_view text) noexcept {
  std::uint64_t bytes = allSpaces;
  if (text.size() < sizeof(bytes)) {
    std::copy(text.begin(), text.end(), reinterpret_cast<char*>(&bytes));
    return (suspicions(bytes) & highest) == 0;
  }
  const char* const last = text.data() + text.size() - sizeof(bytes);
  for (const char* at = text.data(); at < last; at += sizeof(bytes)) {
    std::memcpy(&bytes, at, sizeof(bytes));
    if ((suspicions(bytes) & highest) != 0) return false;
  }
  std::memcpy(&bytes, last, sizeof(bytes));
  return (suspicions(bytes) & highest) == 0;
}

void appendOneLine(std::string& line, std::string_view text) {
  forEachCharacter(text, [&](std::string_view character) { appendEscaped(line, character); });
}

void appendQuoted(std::string& line, std::string_view text) {
  line.push_back('"');
  forEachCharacter(text, [&](std::string_view character) {
    if (!appendIfAmong(quotation, line, character)) appendEscaped(line, character);
  });
  line.push_back('"');
}

}  // namespace zib
