// What the object runtime, the block runtime and dispatch offer as C functions, declared here so
// that no system header is needed, and the one place where Apple's runtime and GCC's differ.
//
// Do not use this above Platform: the rest of the tree is written in the wrappers (Class.h,
// Object.h, Send.h, Block.h, MainQueue.h). Interceptors and stand-ins name `zib::objc::id` and
// `zib::objc::SEL`, since those are the arguments that the runtime calls them with.

#pragma once

#include <cstddef>
#include <cstdint>

struct objc_object;
struct objc_class;
struct objc_method;
struct objc_selector;
struct dispatch_queue_s;

namespace zib::objc {

using id = objc_object*;
using Class = objc_class*;
using Method = objc_method*;

#if defined(__APPLE__)
using SEL = objc_selector*;
using IMP = void (*)();
#if defined(__OBJC_BOOL_IS_BOOL) && __OBJC_BOOL_IS_BOOL
using BOOL = bool;
#else
using BOOL = signed char;
#endif
#else
using SEL = const objc_selector*;
using IMP = id (*)(id, SEL, ...);
using BOOL = unsigned char;
#endif

using Integer = long;            // NSInteger
using UInteger = unsigned long;  // NSUInteger
using UniChar = std::uint16_t;   // unichar

}  // namespace zib::objc

extern "C" {

objc_class* objc_lookUpClass(const char* name);
objc_class* objc_allocateClassPair(objc_class* superclass, const char* name,
                                   std::size_t extraBytes);
void objc_registerClassPair(objc_class* cls);
const char* class_getName(objc_class* cls);
objc_class* class_getSuperclass(objc_class* cls);
objc_method* class_getInstanceMethod(objc_class* cls, zib::objc::SEL selector);
zib::objc::BOOL class_addMethod(objc_class* cls, zib::objc::SEL selector, zib::objc::IMP function,
                                const char* types);
objc_object* objc_getProtocol(const char* name);
zib::objc::BOOL class_addProtocol(objc_class* cls, objc_object* protocol);
zib::objc::IMP method_getImplementation(objc_method* method);
zib::objc::IMP method_setImplementation(objc_method* method, zib::objc::IMP function);
const char* method_getTypeEncoding(objc_method* method);
zib::objc::SEL sel_registerName(const char* name);
const char* sel_getName(zib::objc::SEL selector);
zib::objc::BOOL sel_isEqual(zib::objc::SEL one, zib::objc::SEL other);

void* _Block_copy(const void* block);
void _Block_release(const void* block);
extern void* _NSConcreteStackBlock[32];

extern dispatch_queue_s _dispatch_main_q;
std::uint64_t dispatch_time(std::uint64_t when, std::int64_t nanoseconds);
void dispatch_async_f(dispatch_queue_s* queue, void* context, void (*work)(void*));
void dispatch_sync_f(dispatch_queue_s* queue, void* context, void (*work)(void*));
void dispatch_after_f(std::uint64_t when, dispatch_queue_s* queue, void* context,
                      void (*work)(void*));

#if defined(__APPLE__)
void objc_msgSend(void);
objc_class* object_getClass(objc_object* object);
objc_object* objc_retain(objc_object* object);
void objc_release(objc_object* object);
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
#else
zib::objc::IMP objc_msg_lookup(objc_object* receiver, zib::objc::SEL selector);
#endif

}  // extern "C"

namespace zib::objc {

// Functions of the runtime have one nominal type; this gives one its true type back, or takes it
// away. Through `void (*)()`, which compilers accept as the neutral one.
template <class To, class Function>
To functionCast(Function* function) {
  return reinterpret_cast<To>(reinterpret_cast<void (*)()>(function));
}

#if defined(__APPLE__)

inline Class classOf(id object) { return object_getClass(object); }

// The function that a message reaches. Apple's runtime looks it up inside objc_msgSend, which has
// to be called with the exact type of the method.
template <class Function>
Function* functionFor(id, SEL) {
  return functionCast<Function*>(&objc_msgSend);
}

inline id retain(id object) { return objc_retain(object); }
inline void release(id object) { objc_release(object); }
inline void* pushAutoreleasePool() { return objc_autoreleasePoolPush(); }
inline void popAutoreleasePool(void* pool) { objc_autoreleasePoolPop(pool); }

#else

// GCC's runtime has object_getClass as an inline function only: the class is an object's first
// word.
inline Class classOf(id object) {
  return object == nullptr ? nullptr : *reinterpret_cast<Class*>(object);
}

// Throws the platform's own exception when the receiver does not know the selector.
template <class Function>
Function* functionFor(id receiver, SEL selector) {
  return functionCast<Function*>(objc_msg_lookup(receiver, selector));
}

id retain(id object);
void release(id object);
void* pushAutoreleasePool();
void popAutoreleasePool(void* pool);

#endif

}  // namespace zib::objc
