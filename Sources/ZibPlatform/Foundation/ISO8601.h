// Time stamps in the platform's ISO 8601 form.

#pragma once

#include <string>

#include "ZibPlatform/Foundation/Value.h"

namespace zib {

// In UTC, to the second, such as "2026-11-16T00:10:00Z". Any thread.
std::string currentTimeInISO8601();
std::string timeInISO8601(Date date);

}  // namespace zib
