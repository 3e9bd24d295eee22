// Bytes of any kind as UTF-8 and as the other forms of Unicode, to the platform and back.

#include <cstdint>
#include <optional>
#include <string>

#include "Simulator/Foundation/FormatError.h"
#include "Simulator/Foundation/TextEncoding.h"
#include "Tests/Fuzz/Target.h"
#include "ZibPlatform/Foundation/Strings.h"

namespace {

using sim::TextEncoding;

std::optional<std::string> decoded(std::string_view bytes, std::optional<TextEncoding> encoding) {
  const std::span span(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  try {
    return encoding ? sim::textFrom(span, *encoding) : sim::textFrom(span);
  } catch (const sim::FormatError&) {
    return std::nullopt;
  }
}

void requirePrefixes(const std::string& text) {
  for (const std::size_t count : {0U, 1U, 5U, 20U}) {
    const std::string_view start = zib::firstCharacters(text, count);
    fuzz::require(text.starts_with(start), "the first characters are a start");
    fuzz::require(zib::wellFormed(start) == start, "nothing is cut inside of a character");
  }
}

}  // namespace

void fuzz::prepare() {}

void fuzz::run(std::string_view input) {
  const std::string text = zib::wellFormed(input);
  require(zib::wellFormed(text) == text, "what is well formed stays as it is");
  const zib::Object string = zib::makeString(input);
  require(zib::utf8From(string.raw()) == text, "the platform's text is the well-formed one");
  require(zib::Utf8(zib::StringRef::of(string.raw())).view() == text,
          "a text reads in place as it does in a copy");
  requirePrefixes(text);

  const auto asUtf8 = decoded(input, TextEncoding::utf8);
  require(asUtf8.has_value() == (text == input), "a decoder takes what is well formed");
  const std::string utf16 = sim::utf16BigFrom(text);
  require(decoded(utf16, TextEncoding::utf16Big) == text, "UTF-16 goes there and back");
  for (const auto encoding : {TextEncoding::utf16Little, TextEncoding::utf16Big,
                              TextEncoding::utf32Little, TextEncoding::utf32Big}) {
    const auto each = decoded(input, encoding);
    require(!each || zib::wellFormed(*each) == *each, "what is decoded is well formed");
  }
  const auto detected = decoded(input, std::nullopt);
  require(!detected || zib::wellFormed(*detected) == *detected, "what is detected is well formed");
}
