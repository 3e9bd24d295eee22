#include "Recorder/Redaction.h"

#ifdef ZIB_RECORDS_CALLS

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "ZibMessaging/Private/LinkSearch.h"
#include "ZibMessaging/Private/NotificationEvent.h"
#include "ZibPlatform/Foundation/Strings.h"

namespace zib::recorder {
namespace {

bool isBetween(char character, char first, char last) {
  return first <= character && character <= last;
}

bool isDigit(char character) { return isBetween(character, '0', '9'); }

char lowerCase(char character) {
  return isBetween(character, 'A', 'Z') ? static_cast<char>(character - 'A' + 'a') : character;
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char character) { return lowerCase(character); });
  return lower;
}

// What a letter or digit can become. Hexadecimal digits stay such, and others do not become them:
// escapes are read by both.
enum class CharacterKind : char {
  digit,
  hexadecimalLetter,
  otherLetter,
  beyondASCII,
  // Of an escape: the byte stays one beyond ASCII, or that of a letter.
  firstOfHighEscape,
  firstOfLowEscape,
  secondOfLowEscape,
};

std::string_view charactersOf(CharacterKind kind) {
  switch (kind) {
    case CharacterKind::digit:
      return "0123456789";
    case CharacterKind::hexadecimalLetter:
      return "abcdef";
    case CharacterKind::otherLetter:
      return "xyzghijklmnopqrstuvw";
    case CharacterKind::beyondASCII:
      break;
    case CharacterKind::firstOfHighEscape:
      return "89";
    case CharacterKind::firstOfLowEscape:
      return "46";
    case CharacterKind::secondOfLowEscape:
      return "123456789";
  }
  return {};
}

// From "é" to the end of Latin Extended-A: all of two bytes, and without a case here.
constexpr unsigned firstBeyondASCII = 0xE9;
constexpr unsigned lastBeyondASCII = 0x17F;

std::size_t countOf(CharacterKind kind) {
  return kind == CharacterKind::beyondASCII ? lastBeyondASCII - firstBeyondASCII + 1
                                            : charactersOf(kind).size();
}

std::string character(CharacterKind kind, std::size_t index) {
  if (kind != CharacterKind::beyondASCII) return {charactersOf(kind)[index]};
  constexpr unsigned bitsOfContinuation = 6;
  const unsigned code = firstBeyondASCII + static_cast<unsigned>(index);
  return {static_cast<char>(0xC0U | code >> bitsOfContinuation),
          static_cast<char>(0x80U | (code & 0x3FU))};
}

// A letter or digit, or half of an escape, without capitals.
struct Slot {
  CharacterKind kind;
  bool beginsEscape = false;
  bool isCapital = false;
};

int hexadecimalValue(char digit) {
  constexpr int ten = 10;
  if (isDigit(digit)) return digit - '0';
  const char letter = lowerCase(digit);
  return isBetween(letter, 'a', 'f') ? letter - 'a' + ten : -1;
}

constexpr std::size_t lengthOfEscape = 3;

// The byte of the escape that begins there, or -1.
int escapedByte(std::string_view text) {
  constexpr int base = 16;
  if (text.size() < lengthOfEscape || text[0] != '%') return -1;
  const int first = hexadecimalValue(text[1]);
  const int second = hexadecimalValue(text[2]);
  return first < 0 || second < 0 ? -1 : first * base + second;
}

bool isLetterOrDigit(char letter) {
  return isDigit(letter) || isBetween(lowerCase(letter), 'a', 'z');
}

bool isBeyondASCII(int byte) { return byte >= 0x80; }

CharacterKind kindOf(char letter) {
  if (isDigit(letter)) return CharacterKind::digit;
  return isBetween(lowerCase(letter), 'a', 'f') ? CharacterKind::hexadecimalLetter
                                                : CharacterKind::otherLetter;
}

// How many bytes of a text are the one letter or digit that it begins with, escaped or not; none
// where it begins with something else.
std::size_t lengthOfFirst(std::string_view text) {
  const auto byte = static_cast<unsigned char>(text.front());
  if (isBeyondASCII(byte)) {
    std::size_t length = 1;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
      ++length;
    }
    return length;
  }
  if (isLetterOrDigit(text.front())) return 1;
  const int escaped = escapedByte(text);
  const bool isLetter =
      escaped >= 0 && (isBeyondASCII(escaped) || isLetterOrDigit(static_cast<char>(escaped)));
  return isLetter ? lengthOfEscape : 0;
}

void addSlots(std::string_view letter, std::vector<Slot>& slots) {
  const auto isCapital = [](char character) { return isBetween(character, 'A', 'Z'); };
  if (letter.front() != '%') {
    const bool isASCII = !isBeyondASCII(static_cast<unsigned char>(letter.front()));
    slots.push_back({isASCII ? kindOf(letter.front()) : CharacterKind::beyondASCII, false,
                     isCapital(letter.front())});
    return;
  }
  const bool isHigh = isBeyondASCII(escapedByte(letter));
  const CharacterKind first = !isHigh              ? CharacterKind::firstOfLowEscape
                              : isDigit(letter[1]) ? CharacterKind::firstOfHighEscape
                                                   : CharacterKind::hexadecimalLetter;
  const CharacterKind second =
      !isHigh && isDigit(letter[2]) ? CharacterKind::secondOfLowEscape : kindOf(letter[2]);
  slots.push_back({first, true, isCapital(letter[1])});
  slots.push_back({second, false, isCapital(letter[2])});
}

std::vector<Slot> slotsOf(std::string_view run) {
  std::vector<Slot> slots;
  while (!run.empty()) {
    const std::size_t length = lengthOfFirst(run);
    addSlots(run.substr(0, length), slots);
    run.remove_prefix(length);
  }
  return slots;
}

std::string shapeOf(const std::vector<Slot>& slots) {
  std::string shape;
  for (const Slot& slot : slots) {
    if (slot.beginsEscape) shape += '%';
    shape += static_cast<char>('0' + static_cast<char>(slot.kind));
  }
  return shape;
}

// The text of that shape with the number; longer where the shape has not so many.
std::string textOf(const std::vector<Slot>& slots, std::size_t number) {
  std::vector<std::size_t> indices(slots.size());
  for (std::size_t at = slots.size(); at > 0; --at) {
    indices[at - 1] = number % countOf(slots[at - 1].kind);
    number /= countOf(slots[at - 1].kind);
  }
  std::string text;
  for (std::size_t at = 0; at < slots.size(); ++at) {
    if (slots[at].beginsEscape) text += '%';
    text += character(slots[at].kind, indices[at]);
  }
  for (; number > 0; number /= countOf(CharacterKind::otherLetter)) {
    text += character(CharacterKind::otherLetter, number % countOf(CharacterKind::otherLetter));
  }
  return text;
}

// Capitals where the slots have them.
std::string withCapitals(std::string text, const std::vector<Slot>& slots) {
  std::size_t at = 0;
  for (const Slot& slot : slots) {
    if (slot.beginsEscape) ++at;
    if (slot.isCapital) text[at] = static_cast<char>(text[at] - 'a' + 'A');
    at += slot.kind == CharacterKind::beyondASCII ? 2 : 1;
  }
  return text;
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

// Begins with a letter or digit.
std::size_t lengthOfRun(std::string_view text) {
  std::size_t end = 0;
  while (end < text.size()) {
    const std::size_t length = lengthOfFirst(text.substr(end));
    if (length == 0) break;
    end += length;
  }
  return end;
}

}  // namespace

// What the module knows is nobody's redacted text.
Redaction::Redaction() {
  for (const std::string_view known : knownTexts) {
    std::string_view rest = known;
    while (!rest.empty()) {
      const std::size_t length = lengthOfRun(rest);
      if (length > 0) taken_.insert(lowerCase(rest.substr(0, length)));
      rest.remove_prefix(std::max<std::size_t>(length, 1));
    }
  }
}

// Texts that differ in capitals alone stay so: hosts are compared without them.
std::string Redaction::run(std::string_view letters) {
  const std::vector<Slot> slots = slotsOf(letters);
  const std::string lower = lowerCase(letters);
  auto known = runs_.find(lower);
  if (known == runs_.end()) {
    std::size_t& count = countByShape_[shapeOf(slots)];
    std::string text = textOf(slots, count++);
    while (!taken_.insert(text).second) text = textOf(slots, count++);
    known = runs_.emplace(lower, std::move(text)).first;
  }
  return withCapitals(known->second, slots);
}

std::string Redaction::text(std::string_view text) {
  if (std::find(knownTexts.begin(), knownTexts.end(), text) != knownTexts.end()) {
    return std::string(text);
  }
  const std::lock_guard lock(mutex_);
  std::string result(schemeOf(text));
  text.remove_prefix(result.size());
  while (!text.empty()) {
    if (const std::size_t length = lengthOfRun(text); length > 0) {
      result += run(text.substr(0, length));
      text.remove_prefix(length);
    } else {
      const std::size_t kept = escapedByte(text) < 0 ? 1 : lengthOfEscape;
      result += text.substr(0, kept);
      text.remove_prefix(kept);
    }
  }
  return result;
}

// A number of that many bytes: the more significant ones first.
Bytes Redaction::bytes(const Bytes& bytes) {
  constexpr unsigned bitsOfAByte = 8;
  const std::lock_guard lock(mutex_);
  const auto [known, isNew] = bytes_.emplace(bytes, Bytes(bytes.size()));
  if (isNew) {
    std::size_t number = countByLength_[bytes.size()]++;
    for (std::size_t at = bytes.size(); at > 0; --at) {
      known->second[at - 1] = static_cast<std::uint8_t>(number);
      number >>= bitsOfAByte;
    }
  }
  return known->second;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the value
Value Redaction::value(const Value& value) {
  if (const auto* const found = value.get<std::string>()) return text(*found);
  if (const auto* const found = value.get<Bytes>()) return bytes(*found);
  if (const auto* const list = value.get<Array>()) {
    Array result;
    for (const Value& each : *list) result.push_back(this->value(each));
    return result;
  }
  if (const auto* const map = value.get<ValueMap>()) {
    ValueMap result;
    for (const auto& [key, member] : *map) result.append(key, this->value(member));
    return result;
  }
  return value;
}

}  // namespace zib::recorder

#endif
