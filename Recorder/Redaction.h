// Texts without what they say.

#pragma once

#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Value.h"

namespace zib::recorder {

// Letters and digits become others of their kind, so that what was a URL, a number or hexadecimal
// stays one, and equal texts stay equal. The scheme of a URL stays, and so do the texts that the
// module knows. Doing it twice changes nothing more.
std::string redactedText(std::string_view text);

// Every text in a value; keys and numbers stay.
Value redacted(const Value& value);

}  // namespace zib::recorder
