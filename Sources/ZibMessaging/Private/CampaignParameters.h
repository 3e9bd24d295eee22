// The campaign parameters of a link that opened the app. They are logged, and nothing else.

#pragma once

#include <string_view>

#include "ZibPlatform/Foundation/URL.h"

namespace zib {

// `text` is the URL's own, which every caller has read already. No line where there are none.
void logCampaignParameters(const URL& url, std::string_view text);

}  // namespace zib
