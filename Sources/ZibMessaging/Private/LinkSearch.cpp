#include "ZibMessaging/Private/LinkSearch.h"

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

}  // namespace zib
