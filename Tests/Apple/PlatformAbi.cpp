// The types that cross the boundary to the runtime, as assertions for each target.

#include <cstddef>

#include "Abi.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace {

using zib::BlockDescriptor;
using zib::BlockLayout;

// iOS has no target whose BOOL is a signed char.
static_assert(std::is_same_v<zib::objc::BOOL, bool>);
static_assert(std::is_same_v<zib::objc::IMP, void (*)()>);
static_assert(sizeof(zib::objc::Integer) == 8 && sizeof(zib::objc::UInteger) == 8);
static_assert(std::is_same_v<decltype(&zib::objc::messageSend), void (*)()>,
              "a variadic objc_msgSend would be called with another convention");

static_assert(sizeof(BlockLayout) == 32);
static_assert(offsetof(BlockLayout, isa) == 0);
static_assert(offsetof(BlockLayout, flags) == 8);
static_assert(offsetof(BlockLayout, reserved) == 12);
static_assert(offsetof(BlockLayout, invoke) == 16);
static_assert(offsetof(BlockLayout, descriptor) == 24);
static_assert(offsetof(BlockDescriptor, reserved) == 0);
static_assert(offsetof(BlockDescriptor, size) == 8);
static_assert(offsetof(BlockDescriptor, copy) == 16);
static_assert(offsetof(BlockDescriptor, dispose) == 24);
static_assert(offsetof(BlockDescriptor, signature) == 32);

static_assert(zib::blockHasCopyDispose == 1 << 25);
static_assert(zib::blockHasSignature == 1 << 30);

// The block in Methods.m captures one object after the literal.
static_assert(abi::platformBlockSize == sizeof(BlockLayout) + sizeof(zib::objc::id));
static_assert(abi::platformBlockFields == "ptr, i32, i32, ptr, ptr, ptr");
static_assert(abi::platformDescriptorFields == "i64, i64, ptr, ptr, ptr, i64");
static_assert((abi::platformBlockFlags & zib::blockHasCopyDispose) != 0);
static_assert((abi::platformBlockFlags & zib::blockHasSignature) != 0);
static_assert(zib::encoding::Block<void(zib::objc::UInteger)>::value.view() ==
              abi::platformBlockSignature);

static_assert(abi::isShapedAs(abi::retainShape, &zib::objc::retain));
static_assert(abi::isShapedAs(abi::releaseShape, &zib::objc::release));
static_assert(abi::isShapedAs(abi::autoreleasePoolPushShape, &zib::objc::pushAutoreleasePool));
static_assert(abi::isShapedAs(abi::autoreleasePoolPopShape, &zib::objc::popAutoreleasePool));

}  // namespace
