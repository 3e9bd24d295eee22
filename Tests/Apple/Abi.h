// What the platform's compiler says about the Objective-C declarations in Methods.m, for the
// assertions on ours. PlatformAbi.inc is made by the check, anew for each target.

#pragma once

#include <string_view>

#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

namespace abi {

struct PlatformMethod {
  std::string_view className;
  std::string_view selector;
  std::string_view types;
};

// Defines platformMethods, and the parts of the block in Methods.m.
#include "PlatformAbi.inc"

// A method that is missing in Methods.m does not compile.
consteval std::string_view platformTypes(std::string_view className, std::string_view selector) {
  for (const PlatformMethod& method : platformMethods) {
    if (method.className == className && method.selector == selector) return method.types;
  }
  throw "no such method in Methods.m";
}

template <class Result, class... Arguments>
consteval bool isEncodedAs(std::string_view types, Result (*)(Arguments...)) {
  return zib::encoding::Method<Result(Arguments...)>::value.view() == types;
}

template <class T>
constexpr auto shapeOf() {
  if constexpr (std::is_void_v<T>) {
    return zib::FixedString{"void"};
  } else {
    static_assert(std::is_pointer_v<T>);
    return zib::FixedString{"ptr"};
  }
}

template <class Result, class... Argument>
consteval bool isShapedAs(std::string_view shape, Result (*)(Argument...)) {
  using zib::FixedString;
  const auto ours = shapeOf<Result>() + FixedString{"("} +
                    (FixedString<0>{} + ... + shapeOf<Argument>()) + FixedString{")"};
  return ours.view() == shape;
}

}  // namespace abi
