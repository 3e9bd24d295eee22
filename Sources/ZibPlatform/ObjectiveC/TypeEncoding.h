// The Objective-C type encoding of a C++ signature, made at compile time, with the frame offsets
// that a platform compiler writes: `void(id, SEL, id, id)` gives "v32@0:8@16@24".
//
// Not for types that the module never passes through the runtime: a type without an encoding here
// does not compile, which is better than a wrong guess.

#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "ZibPlatform/ObjectiveC/FixedString.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

struct BlockLayout;

// Foundation's NSRange and NSOperatingSystemVersion, passed by value.
struct Range {
  objc::UInteger location = 0;
  objc::UInteger length = 0;
};
struct OperatingSystemVersion {
  objc::Integer major = 0;
  objc::Integer minor = 0;
  objc::Integer patch = 0;
};

namespace encoding {

template <class T>
constexpr auto of() {
  if constexpr (std::is_same_v<T, void>) {
    return FixedString{"v"};
  } else if constexpr (std::is_same_v<T, objc::id>) {
    return FixedString{"@"};
  } else if constexpr (std::is_same_v<T, objc::Class>) {
    return FixedString{"#"};
  } else if constexpr (std::is_same_v<T, objc::SEL>) {
    return FixedString{":"};
  } else if constexpr (std::is_same_v<T, BlockLayout*>) {
    return FixedString{"@?"};
  } else if constexpr (std::is_same_v<T, objc::IMP>) {
    return FixedString{"^?"};
  } else if constexpr (std::is_same_v<T, bool>) {
    return FixedString{"B"};
  } else if constexpr (std::is_same_v<T, signed char>) {
    return FixedString{"c"};
  } else if constexpr (std::is_same_v<T, unsigned char>) {
    return FixedString{"C"};
  } else if constexpr (std::is_same_v<T, objc::UniChar>) {
    return FixedString{"S"};
  } else if constexpr (std::is_same_v<T, int>) {
    return FixedString{"i"};
  } else if constexpr (std::is_same_v<T, unsigned int>) {
    return FixedString{"I"};
  } else if constexpr (std::is_same_v<T, long> || std::is_same_v<T, long long>) {
    return FixedString{"q"};
  } else if constexpr (std::is_same_v<T, unsigned long> || std::is_same_v<T, unsigned long long>) {
    return FixedString{"Q"};
  } else if constexpr (std::is_same_v<T, float>) {
    return FixedString{"f"};
  } else if constexpr (std::is_same_v<T, double>) {
    return FixedString{"d"};
  } else if constexpr (std::is_same_v<T, const char*>) {
    return FixedString{"r*"};
  } else if constexpr (std::is_same_v<T, Range>) {
    return FixedString{"{_NSRange=QQ}"};
  } else if constexpr (std::is_same_v<T, OperatingSystemVersion>) {
    return FixedString{"{?=qqq}"};
  } else if constexpr (std::is_same_v<T, const void*>) {
    return FixedString{"r^v"};
  } else if constexpr (std::is_same_v<T, void*>) {
    return FixedString{"^v"};
  } else if constexpr (std::is_pointer_v<T> && std::is_const_v<std::remove_pointer_t<T>>) {
    return FixedString{"r^"} + of<std::remove_const_t<std::remove_pointer_t<T>>>();
  } else {
    static_assert(std::is_pointer_v<T>, "this type has no encoding");
    return FixedString{"^"} + of<std::remove_pointer_t<T>>();
  }
}

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
  return of<First>() + decimal<Offset>() + arguments<Offset + frameSize<First>(), Rest...>();
}

template <class Signature>
struct Method;
template <class Result, class... Arguments>
struct Method<Result(Arguments...)> {
  static constexpr auto value = of<Result>() +
                                decimal<(std::size_t{0} + ... + frameSize<Arguments>())>() +
                                arguments<0, Arguments...>();
};

// A block's signature: its first argument is the block itself.
template <class Signature>
struct Block;
template <class Result, class... Arguments>
struct Block<Result(Arguments...)> {
  static constexpr auto value = Method<Result(BlockLayout*, Arguments...)>::value;
};

// An encoding with all removed that compilers and languages disagree on: offsets, qualifiers, class
// and structure names, the spelling of a 64-bit long, and the sign of an integer, since Swift
// declares lengths signed. They are passed alike.
std::string normalised(std::string_view types);

}  // namespace encoding
}  // namespace zib
