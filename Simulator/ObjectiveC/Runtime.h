// What stand-ins need of the object runtime beyond Platform: changing classes that exist, class
// methods, and instance variables, as GCC's runtime has them.
//
// Not for the module: it runs on Apple's runtime too, and does with what Platform declares.

#pragma once

#include <cstddef>

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Selector.h"
#include "ZibPlatform/ObjectiveC/Send.h"
#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

struct objc_ivar;

extern "C" {

// Tells the runtime that the process has threads, so that it locks its tables while classes change.
zib::objc::BOOL objc_thread_add();
zib::objc::SEL method_getName(objc_method* method);
objc_method** class_copyMethodList(objc_class* cls, unsigned int* count);
// Before the class is registered. `logOfAlignment` is the logarithm to base 2.
zib::objc::BOOL class_addIvar(objc_class* cls, const char* name, std::size_t size,
                              unsigned char logOfAlignment, const char* type);
objc_ivar* class_getInstanceVariable(objc_class* cls, const char* name);
zib::objc::id object_getIvar(objc_object* object, objc_ivar* variable);
void object_setIvar(objc_object* object, objc_ivar* variable, objc_object* value);
objc_ivar* object_getInstanceVariable(objc_object* object, const char* name, void** value);
objc_ivar* object_setInstanceVariable(objc_object* object, const char* name, const void* value);

}  // extern "C"

namespace sim {

// The class of the class object: its instance methods are the class methods.
inline zib::Class metaclassOf(zib::Class cls) { return zib::Class::ofObject(cls.object()); }

// As method_setImplementation(), which would have to search for the class whose method it is.
void setImplementation(zib::Class owner, zib::Selector selector, zib::objc::IMP function);

// Gives the class a method of its own in place of what it had or inherited, which is returned, nil
// if there was none; zib::callImplementation() calls it on.
template <class Result, class... Arguments>
zib::objc::IMP installMethod(zib::Class cls, const char* name,
                             Result (*function)(zib::objc::id, zib::objc::SEL, Arguments...)) {
  using Signature = Result(zib::objc::id, zib::objc::SEL, Arguments...);
  const zib::Selector selector(name);
  const zib::Method before = cls.instanceMethod(selector);
  const zib::objc::IMP original = before ? before.implementation() : nullptr;
  // Not class_replaceMethod: GCC's replaces an inherited method in the superclass.
  const auto implementation = zib::objc::functionCast<zib::objc::IMP>(function);
  if (before && cls.ownerOf(selector) == cls) {
    setImplementation(cls, selector, implementation);
  } else {
    cls.addMethod(selector, implementation, zib::encoding::Method<Signature>::value.data());
  }
  return original;
}

template <class Result, class... Arguments>
zib::objc::IMP installClassMethod(zib::Class cls, const char* name,
                                  Result (*function)(zib::objc::id, zib::objc::SEL, Arguments...)) {
  return installMethod(metaclassOf(cls), name, function);
}

// Gives a class that is not registered yet an instance variable that holds a pointer.
inline void addPointerVariable(objc_class* cls, const char* name, const char* type) {
  constexpr unsigned char logOfPointerAlignment = 3;
  class_addIvar(cls, name, sizeof(void*), logOfPointerAlignment, type);
}

// What such a variable holds.
inline void* pointerVariable(zib::objc::id object, const char* name) {
  void* value = nullptr;
  object_getInstanceVariable(object, name, &value);
  return value;
}

// The end of a `dealloc` of one's own, in a class made from NSObject.
inline void deallocInherited(zib::objc::id object, zib::objc::SEL dealloc) {
  const zib::Selector selector(dealloc);
  const auto inherited = zib::classNamed<"NSObject">().instanceMethod(selector);
  zib::callImplementation<void>(inherited.implementation(), object, selector);
}

}  // namespace sim
