#include "ZibPlatform/ObjectiveC/Native.h"

#if !defined(__APPLE__)

// GCC's runtime has no functions for ownership and pools, so the messages are sent.
namespace zib::objc {
namespace {

id sendForObject(id receiver, SEL selector) {
  return functionFor<id(id, SEL)>(receiver, selector)(receiver, selector);
}

void sendForNothing(id receiver, SEL selector) {
  functionFor<void(id, SEL)>(receiver, selector)(receiver, selector);
}

}  // namespace

id retain(id object) {
  static const SEL selector = registerSelector("retain");
  return object == nullptr ? nullptr : sendForObject(object, selector);
}

void release(id object) {
  static const SEL selector = registerSelector("release");
  if (object != nullptr) sendForNothing(object, selector);
}

void* pushAutoreleasePool() {
  static const Class poolClass = lookUpClass("NSAutoreleasePool");
  static const SEL selector = registerSelector("new");
  return sendForObject(reinterpret_cast<id>(poolClass), selector);
}

void popAutoreleasePool(void* pool) {
  static const SEL selector = registerSelector("drain");
  sendForNothing(static_cast<id>(pool), selector);
}

}  // namespace zib::objc

#endif
