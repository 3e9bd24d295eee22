#include "ZibMessaging/Private/LinkSearch.h"

#include <algorithm>

namespace zib {
namespace {

// Empty where there are none to encode.
std::string withEncodedBrackets(std::string_view text) {
  constexpr auto none = std::string_view::npos;
  std::string encoded;
  if (text.find('[') == none && text.find(']') == none) return encoded;
  const std::size_t afterPath = std::min(text.find_first_of("?#"), text.size());
  if (text.find_first_of("[]", afterPath) == none) return encoded;
  encoded.append(text.substr(0, afterPath));
  for (const char each : text.substr(afterPath)) {
    if (each == '[') {
      encoded.append("%5B");
    } else if (each == ']') {
      encoded.append("%5D");
    } else {
      encoded.push_back(each);
    }
  }
  return encoded;
}

}  // namespace

LinkVerdict verdictOnLink(StringRef text) {
  if (!text) return LinkVerdict::noText;
  if (text.equals("")) return LinkVerdict::empty;
  return text.equals(noLinkText) ? LinkVerdict::notApplicable : LinkVerdict::candidate;
}

StringRef findLink(const Dictionary& userInfo) {
  if (userInfo.empty()) return {};
  for (const ConstantString& key : linkKeys) {
    const StringRef text = userInfo.text(key);
    if (verdictOnLink(text) == LinkVerdict::candidate) return text;
  }
  return {};
}

Link::Link(StringRef candidate)
    : sent_(candidate),
      encoded_(withEncodedBrackets(sent())),
      url_(encoded_.empty() ? URL::parse(candidate) : URL::parse(encoded_)) {}

}  // namespace zib
