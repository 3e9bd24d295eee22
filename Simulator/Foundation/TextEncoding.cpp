#include "Simulator/Foundation/TextEncoding.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <memory>

#include "Platform/Strings.h"
#include "Simulator/Foundation/FormatError.h"

namespace sim {
namespace {

using Bytes = std::span<const std::uint8_t>;

class Converter {
 public:
  explicit Converter(const char* from) : descriptor_(iconv_open("UTF-8", from)) {}
  ~Converter() { iconv_close(descriptor_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  std::string convert(Bytes bytes) {
    // A UTF-16 unit takes at most three bytes in UTF-8, a UTF-32 one four.
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

struct Signature {
  std::array<int, 4> bytes;
  std::size_t count;
  std::size_t markLength;
  const char* encoding;
};

constexpr int notNul = -1;

constexpr Signature signatures[] = {
    {{0xEF, 0xBB, 0xBF}, 3, 3, "UTF-8"},    {{0xFF, 0xFE, 0, 0}, 4, 4, "UTF-32LE"},
    {{0, 0, 0xFE, 0xFF}, 4, 4, "UTF-32BE"}, {{0xFF, 0xFE}, 2, 2, "UTF-16LE"},
    {{0xFE, 0xFF}, 2, 2, "UTF-16BE"},       {{notNul, 0, 0, 0}, 4, 0, "UTF-32LE"},
    {{0, 0, 0, notNul}, 4, 0, "UTF-32BE"},  {{notNul, 0}, 2, 0, "UTF-16LE"},
    {{0, notNul}, 2, 0, "UTF-16BE"},
};

bool matches(const Signature& signature, Bytes bytes) {
  if (bytes.size() < signature.count) return false;
  for (std::size_t at = 0; at < signature.count; ++at) {
    const int wanted = signature.bytes[at];
    const bool fits = wanted == notNul ? bytes[at] != 0 : bytes[at] == wanted;
    if (!fits) return false;
  }
  return true;
}

}  // namespace

bool isWellFormed(std::string_view utf8) {
  return zib::utf8From(zib::makeString(utf8).raw()) == utf8;
}

std::string textFrom(Bytes bytes, const char* encoding) {
  if (std::string_view(encoding) != "UTF-8") return Converter(encoding).convert(bytes);
  std::string text(bytes.begin(), bytes.end());
  if (!isWellFormed(text)) throw FormatError("the text is not well-formed UTF-8");
  return text;
}

std::string textFrom(Bytes bytes) {
  for (const Signature& signature : signatures) {
    if (matches(signature, bytes)) {
      return textFrom(bytes.subspan(signature.markLength), signature.encoding);
    }
  }
  return textFrom(bytes, "UTF-8");
}

}  // namespace sim
