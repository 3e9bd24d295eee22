// Where a notification's link is looked for, and what counts as one.

#pragma once

#include <array>
#include <optional>
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

// The candidate, whose text is `text`, as a URL. Brackets in its query and fragment, which some
// systems take and others refuse, are percent-encoded first: campaign links have them.
std::optional<URL> urlOfLink(StringRef candidate, std::string_view text);

}  // namespace zib
