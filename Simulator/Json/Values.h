// Values of the platform and of the module as JSON, and back.

#pragma once

#include "Simulator/Json/Json.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace sim {

// Byte strings become base64 and dates ISO 8601.
Json jsonFrom(const zib::Value& value);
Json jsonFrom(const zib::ValueMap& map);
Json jsonFrom(const zib::Error& error);
// A platform object of any kind.
Json jsonFromObject(zib::objc::id object);
// As the platform's own JSON values: null is the null marker.
zib::Value valueFromJson(const Json& json);

}  // namespace sim
