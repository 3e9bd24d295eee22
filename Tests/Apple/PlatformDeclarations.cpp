// The cross-check unit: the platform's declarations and ours in one file. Compiling it is the
// check. PlatformDeclarations.inc is made by the check: one line for each symbol that Native.h
// binds a declaration to.

#include "PlatformHeaders.h"

#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Native.h"

// Does not compile for two types, but that either may promise not to throw. Takes addresses rather
// than types, so that the use of what the oldest supported system lacks is an error too.
template <class T>
requires(std::is_object_v<T>) consteval bool isDeclaredAs(T* /*ours*/, T* /*platforms*/) {
  return true;
}
template <class Result, class... Arguments, bool ours, bool platforms>
consteval bool isDeclaredAs(Result (*)(Arguments...) noexcept(ours),
                            Result (*)(Arguments...) noexcept(platforms)) {
  return true;
}

#include "PlatformDeclarations.inc"

static_assert(std::is_same_v<zib::objc::id, ::id>);
static_assert(std::is_same_v<zib::objc::Class, ::PlatformClass>);
static_assert(std::is_same_v<zib::objc::Method, ::PlatformMethod>);
static_assert(std::is_same_v<zib::objc::SEL, ::SEL>);
static_assert(std::is_same_v<zib::objc::IMP, ::IMP>);
static_assert(std::is_same_v<zib::objc::BOOL, ::BOOL>);
static_assert(std::is_convertible_v<decltype(::dispatch_get_main_queue()), dispatch_queue_s*>);
static_assert(DISPATCH_TIME_NOW == 0, "mainQueue::after() counts from 0");
