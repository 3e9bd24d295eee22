// Values of the platform and of the module as JSON, and back.

#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "Simulator/Json/Json.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace sim {

// Byte strings become base64 and dates ISO 8601.
Json jsonFrom(const zib::Value& value);
Json jsonFrom(const zib::ValueMap& map);
Json jsonFrom(const zib::Error& error);
// All of an object, deeper than the module takes them: as deep as scenarios have them. What is
// deeper still becomes the null marker.
zib::Value valueOf(zib::objc::id object);
zib::ValueMap valuesOf(const zib::Dictionary& dictionary);
// A platform object of any kind.
Json jsonFromObject(zib::objc::id object);
// Bytes as two lowercase hexadecimal digits each.
std::string hexFrom(std::span<const std::uint8_t> bytes);
// As the platform's own JSON values: null is the null marker.
zib::Value valueFromJson(const Json& json);

}  // namespace sim
