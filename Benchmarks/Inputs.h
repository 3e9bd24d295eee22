// What the measured callbacks are called with.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace bench {

inline constexpr std::string_view fcmToken =
    "dGhpcyBpcyBub3QgYSB0b2tlbg:APA91bHPRgkFLJu6C3z4nPf8AKtTpMZxYcVb7QwErTyUiOpAsDfGhJkLzXcVbNm-"
    "q1W2e3R4t5Y6u7I8o9P0aSdFgHjKlZxCvBnM_qWeRtYuIoPaSdFgHjKlZxCvBnM012345678";
zib::Bytes deviceToken();

// A notification's payload of twelve keys, and one of that many keys, these among them.
zib::ValueMap usualPayload();
zib::Object payloadOf(std::size_t keys, std::size_t bytes = 0);

// A URL with that many campaign parameters.
std::string campaignURL(std::size_t parameters);

}  // namespace bench
