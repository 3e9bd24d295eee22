// The cross-check unit: the platform's declarations and ours in one file. Compiling it is the
// check.

#include "PlatformHeaders.h"

#include "Platform/Block.h"
#include "Platform/Native.h"

static_assert(std::is_same_v<zib::objc::id, ::id>);
static_assert(std::is_same_v<zib::objc::Class, ::PlatformClass>);
static_assert(std::is_same_v<zib::objc::Method, ::PlatformMethod>);
static_assert(std::is_same_v<zib::objc::SEL, ::SEL>);
static_assert(std::is_same_v<zib::objc::IMP, ::IMP>);
static_assert(std::is_same_v<zib::objc::BOOL, ::BOOL>);
static_assert(std::is_convertible_v<decltype(::dispatch_get_main_queue()), dispatch_queue_s*>);
static_assert(DISPATCH_TIME_NOW == 0, "mainQueue::after() counts from 0");
