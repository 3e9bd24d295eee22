#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <optional>
#include <string>
#include <utility>

#include "Simulator/Foundation/Budget.h"
#include "Simulator/Foundation/FormatError.h"
#include "Simulator/Foundation/SortedMembers.h"
#include "Simulator/Foundation/TextEncoding.h"
#include "Simulator/Foundation/TextPropertyList.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::objc::UInteger;

bool isUnquoted(char character) {
  constexpr std::string_view marks = "_$/:.-";
  const auto byte = static_cast<unsigned char>(character);
  return (byte < 0x80 && std::isalnum(byte) != 0) ||
         marks.find(character) != std::string_view::npos;
}

bool isOctal(char character) { return character >= '0' && character <= '7'; }

// Octal escapes are of the encoding that the form is as old as.
std::string fromNextStep(std::uint8_t byte) {
  constexpr unsigned nextStepEncoding = 2;
  const zib::Object text = zib::create<"NSString", "initWithBytes:length:encoding:">(
      static_cast<const void*>(&byte), UInteger{1}, nextStepEncoding);
  return zib::utf8From(text.raw());
}

class TextReader {
 public:
  explicit TextReader(std::string_view text) : text_(text) {}

  zib::Value read() {
    skipSpace();
    if (atEnd()) return zib::ValueMap();
    zib::Value root = value();
    skipSpace();
    if (atEnd()) return root;
    if (root.get<std::string>() == nullptr) fail("there is more after the value");
    at_ = 0;
    return members();
  }

 private:
  [[nodiscard]] bool atEnd() const { return at_ == text_.size(); }
  [[nodiscard]] bool startsWith(std::string_view what) const {
    return text_.substr(at_).starts_with(what);
  }

  [[noreturn]] void fail(const char* what) const {
    const auto lines = 1 + std::count(text_.begin(), text_.begin() + static_cast<long>(at_), '\n');
    throw FormatError(std::string(what) + " (line " + std::to_string(lines) + ")");
  }

  bool take(std::string_view what) {
    if (!startsWith(what)) return false;
    at_ += what.size();
    return true;
  }

  char next() {
    if (atEnd()) fail("the text is cut short");
    return text_[at_++];
  }

  // White space and comments.
  void skipSpace() {
    while (!atEnd()) {
      if (std::isspace(static_cast<unsigned char>(text_[at_])) != 0) {
        ++at_;
      } else if (take("//")) {
        at_ = std::min(text_.find_first_of("\r\n", at_), text_.size());
      } else if (take("/*")) {
        const std::size_t end = text_.find("*/", at_);
        if (end == std::string_view::npos) fail("a comment does not end");
        at_ = end + 2;
      } else {
        return;
      }
    }
  }

  zib::Value value() {
    budget_.spendValue();
    if (take("{")) return dictionary();
    if (take("(")) return array();
    if (take("<")) return data();
    return string();
  }

  zib::Value dictionary() {
    const Nesting nesting(budget_);
    zib::Value result = members();
    if (!take("}")) fail("a dictionary does not end");
    return result;
  }

  // Up to the end of the text or a closing brace. A key alone stands for itself.
  zib::Value members() {
    SortedMembers result;
    for (skipSpace(); !atEnd() && !startsWith("}"); skipSpace()) {
      std::string key = string();
      skipSpace();
      zib::Value member = key;
      if (take("=")) {
        skipSpace();
        member = value();
        skipSpace();
      }
      if (!take(";")) fail("a semicolon is missing");
      result.insert_or_assign(std::move(key), std::move(member));
    }
    return mapFrom(std::move(result));
  }

  zib::Value array() {
    const Nesting nesting(budget_);
    zib::Array result;
    for (skipSpace(); !take(")"); skipSpace()) {
      result.push_back(value());
      skipSpace();
      if (!take(",") && !startsWith(")")) fail("a comma is missing");
    }
    return result;
  }

  zib::Value data() {
    zib::Bytes bytes;
    for (skipSpace(); !take(">"); skipSpace()) bytes.push_back(hexadecimalByte());
    budget_.spendBytes(bytes.size());
    return bytes;
  }

  std::uint8_t hexadecimalByte() {
    const auto byte = hexadecimal(2);
    if (!byte) fail("data is not in pairs of hexadecimal digits");
    return static_cast<std::uint8_t>(*byte);
  }

  // Exactly so many digits.
  std::optional<unsigned> hexadecimal(std::size_t digits) {
    const std::string_view text = text_.substr(at_, digits);
    unsigned number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    if (text.size() != digits || result.ec != std::errc() ||
        result.ptr != text.data() + text.size()) {
      return std::nullopt;
    }
    at_ += digits;
    return number;
  }

  std::string string() {
    std::string result;
    if (startsWith("\"") || startsWith("'")) {
      result = quoted(next());
    } else {
      while (!atEnd() && isUnquoted(text_[at_])) result.push_back(text_[at_++]);
      if (result.empty()) fail("a value or key is missing");
    }
    budget_.spendBytes(result.size());
    return result;
  }

  std::string quoted(char quote) {
    std::string result;
    for (char character = next(); character != quote; character = next()) {
      if (character == '\\') {
        result += escape();
      } else {
        result.push_back(character);
      }
    }
    return result;
  }

  std::string escape() {
    constexpr std::string_view names = "abfnrtv";
    constexpr std::string_view controls = "\a\b\f\n\r\t\v";
    const char character = next();
    if (character == 'U') return unicodeEscape();
    if (isOctal(character)) return octalEscape(character);
    const std::size_t control = names.find(character);
    return std::string(1, control == std::string_view::npos ? character : controls[control]);
  }

  std::string octalEscape(char first) {
    unsigned number = static_cast<unsigned>(first - '0');
    for (int digits = 1; digits < 3 && !atEnd() && isOctal(text_[at_]); ++digits) {
      number = number * 8 + static_cast<unsigned>(next() - '0');
    }
    return fromNextStep(static_cast<std::uint8_t>(number));
  }

  // Of UTF-16, so that a character beyond the first 65536 takes two.
  std::string unicodeEscape() {
    std::array<std::uint8_t, 4> units{};
    std::size_t count = 0;
    const auto takeUnit = [&] {
      const auto unit = hexadecimal(4);
      if (!unit) fail("\\U is not followed by four hexadecimal digits");
      units[count++] = static_cast<std::uint8_t>(*unit >> 8U);
      units[count++] = static_cast<std::uint8_t>(*unit & 0xFFU);
    };
    takeUnit();
    const bool isFirstOfTwo = (units[0] & 0xFCU) == 0xD8U;
    if (isFirstOfTwo && take("\\U")) takeUnit();
    return textFrom(std::span(units).first(count), TextEncoding::utf16Big);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  Budget budget_;
};

}  // namespace

zib::Value readTextPropertyList(std::string_view utf8) { return TextReader(utf8).read(); }

}  // namespace sim
