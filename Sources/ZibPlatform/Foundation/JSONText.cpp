#include "ZibPlatform/Foundation/JSONText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <utility>

#include "ZibPlatform/Foundation/ISO8601.h"

namespace zib {
namespace {

void appendBase64(std::string& text, const Bytes& bytes) {
  constexpr std::string_view digits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    std::uint32_t group = 0;
    for (std::size_t index = 0; index < 3; ++index) {
      group = (group << 8U) | (index < count ? bytes[at + index] : 0U);
    }
    for (std::size_t index = 0; index < 4; ++index) {
      text.push_back(index <= count ? digits[(group >> (18U - 6U * index)) & 0x3FU] : '=');
    }
  }
}

class JSONWriter {
 public:
  void write(const Value& value) {
    value.visit([this](const auto& held) { append(held); });
  }
  [[nodiscard]] std::string&& text() && noexcept { return std::move(text_); }

 private:
  void append(Null) { text_ += "null"; }
  void append(bool value) { text_ += value ? "true" : "false"; }
  void append(std::int64_t value) { text_ += std::to_string(value); }
  void append(std::uint64_t value) { text_ += std::to_string(value); }
  void append(double value) {
    if (!std::isfinite(value)) return append(Null());
    std::array<char, 32> digits{};
    const int length = std::snprintf(digits.data(), digits.size(), "%.17g", value);
    for (const char character : std::string_view(digits.data(), static_cast<std::size_t>(length))) {
      // The process may have set a locale with another decimal point.
      const bool isPlain = std::string_view("0123456789+-e").find(character) != std::string::npos;
      if (isPlain || text_.back() != '.') text_.push_back(isPlain ? character : '.');
    }
  }
  void append(const std::string& value) {
    text_.push_back('"');
    for (const char character : value) appendEscaped(character);
    text_.push_back('"');
  }
  void append(const Bytes& value) {
    text_.push_back('"');
    appendBase64(text_, value);
    text_.push_back('"');
  }
  void append(Date value) { append(timeInISO8601(value)); }
  void append(const Array& values) {
    text_.push_back('[');
    for (const Value& value : values) {
      separate('[');
      write(value);
    }
    text_.push_back(']');
  }
  void append(const ValueMap& members) {
    text_.push_back('{');
    for (const Member* member : byKey(members)) {
      separate('{');
      append(member->key);
      text_.push_back(':');
      write(member->value);
    }
    text_.push_back('}');
  }

  void separate(char opening) {
    if (text_.back() != opening) text_.push_back(',');
  }
  void appendEscaped(char character) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x20) {
      text_.append("\\u00").append({digits[code >> 4U], digits[code & 0xFU]});
      return;
    }
    if (character == '"' || character == '\\') text_.push_back('\\');
    text_.push_back(character);
  }

  std::string text_;
};

}  // namespace

std::string jsonTextOf(const Value& value) {
  JSONWriter writer;
  writer.write(value);
  return std::move(writer).text();
}

}  // namespace zib
