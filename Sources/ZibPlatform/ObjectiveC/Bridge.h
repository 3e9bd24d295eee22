// The platform's objects on their way between a host's Objective-C++ and the module, with ARC and
// without: ARC does not own what the module's headers call `objc::id`.
//
// Only for hosts and core libraries, in .mm files. The module itself is plain C++.

#pragma once

#import <Foundation/Foundation.h>

#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// An object as the module takes it, borrowed for the length of the call:
// `zib::Application::retained(zib::native(application))`.
inline objc::id native(::id object) noexcept { return (__bridge objc::id)object; }

// An object of the module's as the class that it is known to be of:
// `zib::as<NSDictionary>(userInfo.native())`.
template <class Type>
Type *as(objc::id object) noexcept {
  return (__bridge Type *)object;
}
template <class Type>
Type *as(const Object &object) noexcept {
#if __has_feature(objc_arc)
  return as<Type>(object.raw());
#else
  // `object` is mostly a temporary.
  return [[as<Type>(object.raw()) retain] autorelease];
#endif
}

}  // namespace zib
