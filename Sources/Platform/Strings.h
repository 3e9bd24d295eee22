// Text between C++ (UTF-8) and the platform (NSString).

#pragma once

#include <string>
#include <string_view>

#include "Platform/FixedString.h"
#include "Platform/Native.h"
#include "Platform/Object.h"

namespace zib {

// Never fails: bytes that are not UTF-8 become U+FFFD, one for each maximal ill-formed part.
Object makeString(std::string_view utf8);

// The whole text, NUL characters included; lone surrogates become U+FFFD. Empty for nil. `string`
// is an NSString or nil.
std::string utf8From(objc::id string);

bool isString(objc::id object);

// The first `count` characters (Unicode scalar values) of UTF-8. A maximal part that is ill-formed
// counts as one.
std::string_view firstCharacters(std::string_view utf8, std::size_t count) noexcept;

// A text known at compile time and the platform's object for it. The object is made at its first
// use and kept: a key that is looked up on every notification must not be made, nor hashed, anew.
struct ConstantString {
  std::string_view text;
  objc::id (*object)();
};

template <FixedString Text>
objc::id objectOfConstant() {
  static const objc::id string = objc::retain(makeString(Text.view()).raw());
  return string;
}

template <FixedString Text>
inline constexpr ConstantString constantString{Text.view(), &objectOfConstant<Text>};

}  // namespace zib
