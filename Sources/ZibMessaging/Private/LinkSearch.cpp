#include "ZibMessaging/Private/LinkSearch.h"

namespace zib {
namespace {

// Those of the query and the fragment. Empty where the text has none at all.
std::string withEncodedBrackets(std::string_view text) {
  constexpr auto none = std::string_view::npos;
  std::string encoded;
  if (text.find('[') == none && text.find(']') == none) return encoded;
  bool isPath = true;
  for (const char each : text) {
    isPath = isPath && each != '?' && each != '#';
    if (!isPath && each == '[') {
      encoded.append("%5B");
    } else if (!isPath && each == ']') {
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
