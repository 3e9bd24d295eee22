// The fields of a step, and the arguments of an operation, as the types that the platform and the
// module take. They have been checked when the scenario was read, so none of this fails.

#pragma once

#include <string>

#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/Value.h"

namespace sim {

// Under "userInfo".
zib::ValueMap userInfoOf(const Json& fields);
zib::Dictionary dictionaryOf(const Json& fields);
// Under "hex".
zib::Bytes bytesOf(const Json& fields);
// Under "error", which is not null.
zib::Error errorOf(const Json& fields);
// Under "action"; without one, that the user tapped the notification itself.
std::string actionOf(const Json& fields);

zib::URL urlFrom(const std::string& text);

}  // namespace sim
