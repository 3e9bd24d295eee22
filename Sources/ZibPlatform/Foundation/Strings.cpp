#include "ZibPlatform/Foundation/Strings.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "ZibPlatform/Foundation/Structures.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

constexpr char32_t replacement = 0xFFFD;
// Texts up to this length are converted on the stack.
constexpr std::size_t shortText = 512;

bool isContinuation(unsigned char byte) { return (byte & 0xC0U) == 0x80U; }

struct Sequence {
  std::size_t length;  // of the whole sequence, 0 for a byte that starts none
  unsigned char secondFrom;
  unsigned char secondTo;
};

// Which sequence a first byte starts, and what its second byte may be: this excludes overlong
// forms, surrogates, and all beyond U+10FFFF.
constexpr Sequence sequenceOf(unsigned char first) {
  if (first < 0x80) return {1, 0, 0};
  if (first < 0xC2) return {0, 0, 0};
  if (first < 0xE0) return {2, 0x80, 0xBF};
  if (first == 0xE0) return {3, 0xA0, 0xBF};
  if (first == 0xED) return {3, 0x80, 0x9F};
  if (first < 0xF0) return {3, 0x80, 0xBF};
  if (first == 0xF0) return {4, 0x90, 0xBF};
  if (first < 0xF4) return {4, 0x80, 0xBF};
  if (first == 0xF4) return {4, 0x80, 0x8F};
  return {0, 0, 0};
}

// Reads one character at `at` and moves past it.
char32_t nextCharacter(std::string_view utf8, std::size_t& at) {
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(utf8[index]); };
  const unsigned char first = byte(at++);
  const Sequence sequence = sequenceOf(first);
  if (sequence.length == 1) return first;
  if (sequence.length == 0) return replacement;
  char32_t character = first & (0xFFU >> (sequence.length + 1));
  for (std::size_t index = 1; index < sequence.length; ++index) {
    if (at >= utf8.size() || !isContinuation(byte(at))) return replacement;
    if (index == 1 && (byte(at) < sequence.secondFrom || byte(at) > sequence.secondTo)) {
      return replacement;
    }
    character = (character << 6U) | (byte(at++) & 0x3FU);
  }
  return character;
}

constexpr std::uint64_t beyondASCII = 0x8080808080808080U;

// Eight bytes at a time, the last of which may be some of those before. May say no of a shorter
// text.
bool isASCII(std::string_view text) {
  std::uint64_t bytes = 0;
  if (text.size() < sizeof(bytes)) return false;
  const char* const last = text.data() + text.size() - sizeof(bytes);
  for (const char* at = text.data(); at < last; at += sizeof(bytes)) {
    std::memcpy(&bytes, at, sizeof(bytes));
    if ((bytes & beyondASCII) != 0) return false;
  }
  std::memcpy(&bytes, last, sizeof(bytes));
  return (bytes & beyondASCII) == 0;
}

// Calls `use` with each eight bytes of the beginning that are ASCII. The rest begins where they
// end.
template <class Use>
std::size_t forASCIIWords(std::string_view utf8, Use use) {
  std::size_t done = 0;
  for (std::uint64_t bytes = 0; utf8.size() - done >= sizeof(bytes); done += sizeof(bytes)) {
    std::memcpy(&bytes, utf8.data() + done, sizeof(bytes));
    if ((bytes & beyondASCII) != 0) break;
    use(done);
  }
  return done;
}

// Writes at most as many units as `utf8` has bytes.
std::size_t writeUtf16(std::string_view utf8, objc::UniChar* out) {
  std::size_t length = forASCIIWords(
      utf8, [&](std::size_t at) { std::copy_n(utf8.data() + at, sizeof(beyondASCII), out + at); });
  for (std::size_t at = length; at < utf8.size();) {
    const char32_t character = nextCharacter(utf8, at);
    if (character < 0x10000) {
      out[length++] = static_cast<objc::UniChar>(character);
    } else {
      out[length++] = static_cast<objc::UniChar>(0xD7C0U + (character >> 10U));
      out[length++] = static_cast<objc::UniChar>(0xDC00U + (character & 0x3FFU));
    }
  }
  return length;
}

void appendUtf8(std::string& out, char32_t character) {
  const auto put = [&](char32_t bits) { out.push_back(static_cast<char>(bits)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0U | (character >> 6U));
    put(0x80U | (character & 0x3FU));
  } else if (character < 0x10000) {
    put(0xE0U | (character >> 12U));
    put(0x80U | ((character >> 6U) & 0x3FU));
    put(0x80U | (character & 0x3FU));
  } else {
    put(0xF0U | (character >> 18U));
    put(0x80U | ((character >> 12U) & 0x3FU));
    put(0x80U | ((character >> 6U) & 0x3FU));
    put(0x80U | (character & 0x3FU));
  }
}

bool isHighSurrogate(objc::UniChar unit) { return (unit & 0xFC00U) == 0xD800U; }
bool isLowSurrogate(objc::UniChar unit) { return (unit & 0xFC00U) == 0xDC00U; }

// Whether all units are ASCII; `out` then holds them as bytes.
bool narrowIfASCII(const objc::UniChar* units, std::size_t length, char* out) {
  unsigned all = 0;
  for (std::size_t at = 0; at < length; ++at) {
    all |= units[at];
    out[at] = static_cast<char>(units[at]);
  }
  return all < 0x80;
}

std::string utf8FromUnits(const objc::UniChar* units, std::size_t length) {
  std::string result;
  result.reserve(length);
  for (std::size_t at = 0; at < length; ++at) {
    const objc::UniChar unit = units[at];
    if (isHighSurrogate(unit) && at + 1 < length && isLowSurrogate(units[at + 1])) {
      appendUtf8(result, 0x10000U + ((unit & 0x3FFU) << 10U) + (units[++at] & 0x3FFU));
    } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
      appendUtf8(result, replacement);
    } else {
      appendUtf8(result, unit);
    }
  }
  return result;
}

Object stringFromUnits(const objc::UniChar* units, std::size_t length) {
  return create<"NSString", "initWithCharacters:length:">(units, objc::UInteger{length});
}

}  // namespace

Object makeString(std::string_view utf8) {
  if (utf8.size() <= shortText) {
    std::array<objc::UniChar, shortText> units;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    return stringFromUnits(units.data(), writeUtf16(utf8, units.data()));
  }
  std::vector<objc::UniChar> units(utf8.size());
  return stringFromUnits(units.data(), writeUtf16(utf8, units.data()));
}

std::string utf8From(objc::id string) { return StringRef(string).utf8(); }

std::string textAnswered(objc::id object, Selector selector, std::string_view otherwise) {
  try {
    const StringRef text = StringRef::of(send<objc::id>(object, selector));
    if (text) return text.utf8();
  } catch (...) {
    return std::string(otherwise);
  }
  return std::string(otherwise);
}

std::string StringRef::utf8() const { return std::string(Utf8(*this).view()); }

Utf8::Utf8(StringRef text) {  // NOLINT(cppcoreguidelines-pro-type-member-init): written below
  static_assert(room >= shortText);
  const objc::id string = text.native();
  const auto length = send<objc::UInteger>(string, selector<"length">());
  if (length == 0) return;
  const auto read = [&](objc::UniChar* units) {
    send<void>(string, selector<"getCharacters:range:">(), units, Range{0, length});
  };
  if (length <= shortText) {
    std::array<objc::UniChar, shortText> units;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    read(units.data());
    if (narrowIfASCII(units.data(), length, characters_.data())) {
      view_ = {characters_.data(), length};
      return;
    }
    spilled_ = utf8FromUnits(units.data(), length);
  } else {
    std::vector<objc::UniChar> units(length);
    read(units.data());
    spilled_ = utf8FromUnits(units.data(), length);
  }
  view_ = spilled_;
}

bool StringRef::equals(std::string_view ascii) const {
  return send<objc::UInteger>(raw_, selector<"length">()) == ascii.size() && endsWith(ascii);
}

bool StringRef::endsWith(std::string_view ascii) const {
  std::array<objc::UniChar, shortText> end;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  const auto length = send<objc::UInteger>(raw_, selector<"length">());
  if (length < ascii.size() || ascii.size() > end.size()) return false;
  send<void>(raw_, selector<"getCharacters:range:">(), end.data(),
             Range{length - ascii.size(), ascii.size()});
  return std::equal(ascii.begin(), ascii.end(), end.begin(),
                    [](char character, objc::UniChar unit) {
                      return static_cast<unsigned char>(character) == unit;
                    });
}

objc::id ConstantString::makeNow() const {
  Object made = makeString(text);
  // Another thread's, if it was faster.
  objc::id object = nullptr;
  return kept->compare_exchange_strong(object, made.raw()) ? made.relinquish() : object;
}

std::string wellFormed(std::string_view utf8) {
  std::string result;
  result.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) appendUtf8(result, nextCharacter(utf8, at));
  return result;
}

std::string joined(std::span<const std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text.append(part);
  return text;
}

std::string_view firstCharacters(std::string_view utf8, std::size_t count) noexcept {
  const std::string_view first = utf8.substr(0, count);
  if (isASCII(first)) return first;
  std::size_t end = 0;
  for (; count > 0 && end < utf8.size(); --count) nextCharacter(utf8, end);
  return utf8.substr(0, end);
}

}  // namespace zib
