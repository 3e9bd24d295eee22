// Where a notification's link is looked for, and what counts as one.

#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/URL.h"

namespace zib {

// In the order in which they are searched.
inline constexpr std::array<ConstantString, 9> linkKeys{
    constantString<"url">,       constantString<"link">,         constantString<"click_action">,
    constantString<"deep_link">, constantString<"deeplink">,     constantString<"click_url">,
    constantString<"web_link">,  constantString<"redirect_url">, constantString<"action_url">,
};

// What campaign tools write for "no link".
inline constexpr std::string_view noLinkText = "NA";

enum class LinkVerdict { noText, empty, notApplicable, candidate };

// On what a link key holds; none where it holds no string.
LinkVerdict verdictOnLink(StringRef text);

// The first candidate decides, even if it turns out to be no URL: falling back to another key would
// open something that the campaign did not put first.
StringRef findLink(const Dictionary& userInfo);

// A candidate, read once.
class Link {
 public:
  explicit Link(StringRef candidate);

  // What the campaign sent.
  [[nodiscard]] std::string_view sent() const noexcept { return sent_.view(); }
  // None where it is no URL.
  [[nodiscard]] const std::optional<URL>& url() const noexcept { return url_; }
  // The URL's own text: what was sent, but for brackets in the query and the fragment, which some
  // systems take and others refuse. They are percent-encoded: campaign links have them.
  [[nodiscard]] std::string_view text() const noexcept {
    return encoded_.empty() ? sent() : encoded_;
  }

 private:
  Utf8 sent_;
  std::string encoded_;
  std::optional<URL> url_;
};

}  // namespace zib
