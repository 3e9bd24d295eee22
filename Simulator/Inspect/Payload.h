// A push payload as it stands in a file.

#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/Foundation/Dictionary.h"

namespace sim {

struct Payload {
  // What the app gets as `userInfo`.
  zib::Dictionary userInfo;
  Json json;
  std::size_t size = 0;
  // Which the push service takes; the platform reads more.
  bool isUTF8 = true;
  // With dots; of which the platform keeps one.
  std::vector<std::string> repeatedKeys;
};

// Reads it as the platform reads JSON, without the key by which an .apns file names its app. Throws
// ScenarioError.
Payload readPayload(std::string_view text);

// "a number", "true or false", "an object", "a list", "null", "a text".
std::string kindOf(const Json& value);

// In double quotes, escaped, shortened to what a sentence bears.
std::string inQuotes(std::string_view text);

}  // namespace sim
