// The Objective-C type encoding of a C++ signature, made at compile time, with the frame offsets
// that a platform compiler writes: `void(id, SEL, id, id)` gives "v32@0:8@16@24".
//
// Each type states its own encoding, beside its declaration. One that states none does not compile
// in a signature, which is better than a wrong guess.

#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "ZibPlatform/ObjectiveC/FixedString.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib::encoding {

template <FixedString Encoding>
struct Text {
  static constexpr auto value = Encoding;
};

template <class T>
inline constexpr bool isStated = false;

// Open: `template <> struct Of<NewType> : Text<"…"> {};` states the encoding of a type.
template <class T>
struct Of {
  static_assert(isStated<T>, "this type has no encoding");
};

template <>
struct Of<void> : Text<"v"> {};
template <>
struct Of<objc::id> : Text<"@"> {};
template <>
struct Of<objc::Class> : Text<"#"> {};
template <>
struct Of<objc::SEL> : Text<":"> {};
template <>
struct Of<objc::IMP> : Text<"^?"> {};
template <>
struct Of<bool> : Text<"B"> {};
template <>
struct Of<signed char> : Text<"c"> {};
template <>
struct Of<unsigned char> : Text<"C"> {};
template <>
struct Of<objc::UniChar> : Text<"S"> {};
template <>
struct Of<int> : Text<"i"> {};
template <>
struct Of<unsigned int> : Text<"I"> {};
template <>
struct Of<long> : Text<"q"> {};
template <>
struct Of<long long> : Text<"q"> {};
template <>
struct Of<unsigned long> : Text<"Q"> {};
template <>
struct Of<unsigned long long> : Text<"Q"> {};
template <>
struct Of<float> : Text<"f"> {};
template <>
struct Of<double> : Text<"d"> {};
template <>
struct Of<const char*> : Text<"r*"> {};
template <class T>
struct Of<T*> : Text<FixedString{"^"} + Of<T>::value> {};
template <class T>
struct Of<const T*> : Text<FixedString{"r^"} + Of<T>::value> {};

template <std::size_t Value>
constexpr auto decimal() {
  if constexpr (Value < 10) {
    const char digit[2] = {static_cast<char>('0' + Value), '\0'};
    return FixedString<1>{digit};
  } else {
    return decimal<Value / 10>() + decimal<Value % 10>();
  }
}

// Integers narrower than an int take an int's place in the frame.
template <class T>
constexpr std::size_t frameSize() {
  if constexpr (std::is_integral_v<T>) {
    return std::max(sizeof(T), sizeof(int));
  } else {
    return sizeof(T);  // NOLINT(bugprone-sizeof-expression): pointers are meant
  }
}

template <std::size_t Offset>
constexpr auto arguments() {
  return FixedString<0>{};
}
template <std::size_t Offset, class First, class... Rest>
constexpr auto arguments() {
  return Of<First>::value + decimal<Offset>() + arguments<Offset + frameSize<First>(), Rest...>();
}

template <class Signature>
struct Method;
template <class Result, class... Arguments>
struct Method<Result(Arguments...)> {
  static constexpr auto value = Of<Result>::value +
                                decimal<(std::size_t{0} + ... + frameSize<Arguments>())>() +
                                arguments<0, Arguments...>();
};

// An encoding with all removed that compilers and languages disagree on: offsets, qualifiers, class
// and structure names, the spelling of a 64-bit long, and the sign of an integer, since Swift
// declares lengths signed. They are passed alike.
std::string normalised(std::string_view types);
// Whether two are the same so, with a block for an object: Foundations compiled without block
// support declare one as a pointer to a structure, which is passed alike.
bool agree(std::string_view one, std::string_view other);

}  // namespace zib::encoding
