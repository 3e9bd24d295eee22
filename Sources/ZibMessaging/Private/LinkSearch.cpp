#include "ZibMessaging/Private/LinkSearch.h"

#include <algorithm>
#include <string>

namespace zib {

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

std::optional<URL> urlOfLink(StringRef candidate, std::string_view text) {
  constexpr auto none = std::string_view::npos;
  if (text.find('[') == none && text.find(']') == none) return URL::parse(candidate);
  const std::size_t afterPath = std::min(text.find_first_of("?#"), text.size());
  if (text.find_first_of("[]", afterPath) == none) return URL::parse(candidate);
  std::string encoded(text.substr(0, afterPath));
  for (const char each : text.substr(afterPath)) {
    if (each == '[') {
      encoded.append("%5B");
    } else if (each == ']') {
      encoded.append("%5D");
    } else {
      encoded.push_back(each);
    }
  }
  return URL::parse(encoded);
}

}  // namespace zib
