#include "Simulator/Foundation/TextEncoding.h"

#include <iconv.h>

#include <array>

#include "Simulator/Foundation/FormatError.h"
#include "ZibPlatform/Foundation/Strings.h"

namespace sim {
namespace {

using Bytes = std::span<const std::uint8_t>;

class Converter {
 public:
  Converter(const char* from, const char* to) : descriptor_(iconv_open(to, from)) {}
  ~Converter() { iconv_close(descriptor_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  std::string convert(Bytes bytes) {
    // No Unicode form of a text is more than twice as long as UTF-8 or UTF-16 of it.
    std::string result(bytes.size() * 2, '\0');
    char* in = const_cast<char*>(reinterpret_cast<const char*>(bytes.data()));
    std::size_t inLeft = bytes.size();
    char* out = result.data();
    std::size_t outLeft = result.size();
    if (iconv(descriptor_, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) {
      throw FormatError("the text is not well-formed Unicode");
    }
    result.resize(result.size() - outLeft);
    return result;
  }

 private:
  iconv_t descriptor_;
};

const char* nameOf(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::utf16Little:
      return "UTF-16LE";
    case TextEncoding::utf16Big:
      return "UTF-16BE";
    case TextEncoding::utf32Little:
      return "UTF-32LE";
    case TextEncoding::utf32Big:
      return "UTF-32BE";
    default:
      return "UTF-8";
  }
}

// What the first bytes of a text are when it is in that encoding.
struct Signature {
  std::array<int, 4> bytes;
  std::size_t count;
  std::size_t markLength;
  TextEncoding encoding;
};

constexpr int notNul = -1;

constexpr Signature signatures[] = {
    {{0xEF, 0xBB, 0xBF}, 3, 3, TextEncoding::utf8},
    {{0xFF, 0xFE, 0, 0}, 4, 4, TextEncoding::utf32Little},
    {{0, 0, 0xFE, 0xFF}, 4, 4, TextEncoding::utf32Big},
    {{0xFF, 0xFE}, 2, 2, TextEncoding::utf16Little},
    {{0xFE, 0xFF}, 2, 2, TextEncoding::utf16Big},
    {{notNul, 0, 0, 0}, 4, 0, TextEncoding::utf32Little},
    {{0, 0, 0, notNul}, 4, 0, TextEncoding::utf32Big},
    {{notNul, 0}, 2, 0, TextEncoding::utf16Little},
    {{0, notNul}, 2, 0, TextEncoding::utf16Big},
};

bool matches(const Signature& signature, Bytes bytes) {
  if (bytes.size() < signature.count) return false;
  for (std::size_t at = 0; at < signature.count; ++at) {
    const int wanted = signature.bytes[at];
    if (wanted == notNul ? bytes[at] == 0 : bytes[at] != wanted) return false;
  }
  return true;
}

}  // namespace

std::string textFrom(Bytes bytes, TextEncoding encoding) {
  if (encoding != TextEncoding::utf8) return Converter(nameOf(encoding), "UTF-8").convert(bytes);
  std::string text(bytes.begin(), bytes.end());
  const bool isWellFormed = zib::utf8From(zib::makeString(text).raw()) == text;
  if (!isWellFormed) throw FormatError("the text is not well-formed UTF-8");
  return text;
}

std::string textFrom(Bytes bytes) {
  for (const Signature& signature : signatures) {
    if (matches(signature, bytes)) {
      return textFrom(bytes.subspan(signature.markLength), signature.encoding);
    }
  }
  return textFrom(bytes, TextEncoding::utf8);
}

std::string utf16BigFrom(std::string_view utf8) {
  return Converter("UTF-8", nameOf(TextEncoding::utf16Big))
      .convert({reinterpret_cast<const std::uint8_t*>(utf8.data()), utf8.size()});
}

}  // namespace sim
