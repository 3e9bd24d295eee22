// Whole values between C++ and the platform.
//
// Not for reading a key or two of a notification: Dictionary does that without converting the rest.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "ZibPlatform/Foundation/Result.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// How much of an object is taken: levels of containers, and values with those inside of others, a
// container that several hold once for each.
struct Extent {
  int levels;
  std::size_t values;
};
// The nesting of a payload is the sender's choice, the stack is ours: a phone's secondary threads
// have 512 KB. A push of 4 KB cannot hold more than 2,048 values; fifty times as many are for what
// hosts make themselves, and take some 50 ms and 10 MB.
inline constexpr Extent allowedExtent{.levels = 256, .values = 100'000};

// The errors are of this domain.
inline constexpr std::string_view valueErrorDomain = "ZibMessaging.ZibValueError";
enum class ValueError : std::uint8_t { nestedTooDeep, tooManyValues };

// Nil gives the null marker. A number made from a boolean is a bool. An object that is no property
// list value is taken by its description, a key that is no string likewise, and a set is an array.
// What is larger than allowed gives an error that says where.
Result<Value> valueFrom(objc::id object, Extent allowed = allowedExtent);

// Containers nested deeper than this become the null marker.
inline constexpr int maximumNesting = 1024;
Object objectFrom(const Value& value);
Object objectFrom(const ValueMap& map);

}  // namespace zib
