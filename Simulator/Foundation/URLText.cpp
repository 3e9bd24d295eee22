#include "Simulator/Foundation/URLText.h"

#include <uriparser/Uri.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <memory>

namespace sim {
namespace {

using ParsedMembers = std::unique_ptr<UriUriA, decltype(&uriFreeUriMembersA)>;

std::optional<std::string_view> textOf(const UriTextRangeA& range) {
  if (range.first == nullptr) return std::nullopt;
  return std::string_view(range.first, static_cast<std::size_t>(range.afterLast - range.first));
}

bool hasHost(const UriUriA& uri) { return uri.hostText.first != nullptr; }

bool isPercentEncoding(std::string_view text) {
  const auto isDigit = [](unsigned char digit) { return std::isxdigit(digit) != 0; };
  return text.size() >= 3 && text[0] == '%' && isDigit(static_cast<unsigned char>(text[1])) &&
         isDigit(static_cast<unsigned char>(text[2]));
}

bool isURLCharacter(char character) {
  constexpr std::string_view marks = "-._~:/?#[]@!$&'()*+,;=";
  const auto byte = static_cast<unsigned char>(character);
  return (byte < 0x80 && std::isalnum(byte) != 0) ||
         marks.find(character) != std::string_view::npos;
}

}  // namespace

std::optional<URLText> parseURLText(std::string_view text) {
  if (text.empty()) return std::nullopt;
  UriUriA uri;
  const char* errorAt = nullptr;
  if (uriParseSingleUriExA(&uri, text.data(), text.data() + text.size(), &errorAt) != URI_SUCCESS) {
    return std::nullopt;
  }
  const ParsedMembers members(&uri, &uriFreeUriMembersA);
  URLText result{textOf(uri.query), std::nullopt};
  const char* after = uri.query.first != nullptr ? uri.query.first : uri.fragment.first;
  if (hasHost(uri) && uri.pathHead == nullptr && after != nullptr) {
    result.missingPath = static_cast<std::size_t>(after - 1 - text.data());
  }
  return result;
}

std::optional<URLText> parseLegacyURLText(std::string_view text) {
  if (auto parsed = parseURLText(text)) return parsed;
  // Of the same length, so that the parts lie where they are in `text`.
  std::string neutral(text);
  std::replace(neutral.begin(), neutral.end(), '[', '-');
  std::replace(neutral.begin(), neutral.end(), ']', '-');
  auto parsed = parseURLText(neutral);
  if (parsed && parsed->query) {
    const auto begin = static_cast<std::size_t>(parsed->query->data() - neutral.data());
    parsed->query = text.substr(begin, parsed->query->size());
  }
  return parsed;
}

std::string withInvalidCharactersEncoded(std::string_view text) {
  const auto encoded = [text](std::string_view alsoInvalid) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
      const bool isValid = isURLCharacter(text[at]) || isPercentEncoding(text.substr(at));
      if (isValid && alsoInvalid.find(text[at]) == std::string_view::npos) {
        result.push_back(text[at]);
      } else {
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(text[at]));
        result += code;
      }
    }
    return result;
  };
  std::string result = encoded("");
  return parseURLText(result) ? result : encoded("[]");
}

std::string percentDecoded(std::string_view text) {
  constexpr int hexadecimal = 16;
  std::string result;
  while (!text.empty()) {
    if (isPercentEncoding(text)) {
      std::uint8_t byte = 0;
      std::from_chars(text.data() + 1, text.data() + 3, byte, hexadecimal);
      result.push_back(static_cast<char>(byte));
      text.remove_prefix(3);
    } else {
      result.push_back(text.front());
      text.remove_prefix(1);
    }
  }
  return result;
}

}  // namespace sim
