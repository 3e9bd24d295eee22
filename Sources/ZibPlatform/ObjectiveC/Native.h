// What the object runtime, the block runtime and dispatch offer as C functions, declared here so
// that no system header is needed, and the one place where Apple's runtime and GCC's differ. Under
// names of our own, each bound to the platform's symbol: in a host's Objective-C++ the platform's
// declarations of the same functions stand beside these and have other types.
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

// The symbol of a C function or object, to which a declaration of ours is bound.
#if defined(__APPLE__)
#define ZIB_SYMBOL(name) __asm__("_" #name)
#else
#define ZIB_SYMBOL(name) __asm__(#name)
#endif
// And does not throw, so that nothing has to be cleaned up around each call.
#define ZIB_NOTHROW(name) ZIB_SYMBOL(name) __attribute__((nothrow))

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

Class lookUpClass(const char* name) ZIB_NOTHROW(objc_lookUpClass);
Class allocateClassPair(Class superclass, const char* name, std::size_t extraBytes)
    ZIB_NOTHROW(objc_allocateClassPair);
void registerClassPair(Class cls) ZIB_NOTHROW(objc_registerClassPair);
const char* nameOfClass(Class cls) ZIB_NOTHROW(class_getName);
Class superclassOf(Class cls) ZIB_NOTHROW(class_getSuperclass);
Method instanceMethod(Class cls, SEL selector) ZIB_SYMBOL(class_getInstanceMethod);
BOOL addMethod(Class cls, SEL selector, IMP function, const char* types)
    ZIB_NOTHROW(class_addMethod);
id protocolNamed(const char* name) ZIB_NOTHROW(objc_getProtocol);
BOOL addProtocol(Class cls, id protocol) ZIB_NOTHROW(class_addProtocol);
IMP implementationOf(Method method) ZIB_NOTHROW(method_getImplementation);
IMP setImplementation(Method method, IMP function) ZIB_NOTHROW(method_setImplementation);
const char* typeEncodingOf(Method method) ZIB_NOTHROW(method_getTypeEncoding);
SEL registerSelector(const char* name) ZIB_NOTHROW(sel_registerName);
const char* nameOfSelector(SEL selector) ZIB_NOTHROW(sel_getName);
BOOL areEqual(SEL one, SEL other) ZIB_NOTHROW(sel_isEqual);

void* copyBlock(const void* block) ZIB_SYMBOL(_Block_copy);
void releaseBlock(const void* block) ZIB_NOTHROW(_Block_release);
extern void* stackBlockClass[32] ZIB_SYMBOL(_NSConcreteStackBlock);

extern dispatch_queue_s mainDispatchQueue ZIB_SYMBOL(_dispatch_main_q);
std::uint64_t dispatchTime(std::uint64_t when, std::int64_t nanoseconds) ZIB_NOTHROW(dispatch_time);
void dispatchAsync(dispatch_queue_s* queue, void* context, void (*work)(void*))
    ZIB_NOTHROW(dispatch_async_f);
void dispatchSync(dispatch_queue_s* queue, void* context, void (*work)(void*))
    ZIB_NOTHROW(dispatch_sync_f);
void dispatchAfter(std::uint64_t when, dispatch_queue_s* queue, void* context, void (*work)(void*))
    ZIB_NOTHROW(dispatch_after_f);

#if defined(__APPLE__)
void messageSend() ZIB_SYMBOL(objc_msgSend);
Class classOf(id object) ZIB_NOTHROW(object_getClass);
IMP methodImplementation(Class cls, SEL selector) ZIB_SYMBOL(class_getMethodImplementation);
id retain(id object) ZIB_NOTHROW(objc_retain);
void release(id object) ZIB_NOTHROW(objc_release);
void* pushAutoreleasePool() ZIB_NOTHROW(objc_autoreleasePoolPush);
void popAutoreleasePool(void* pool) ZIB_NOTHROW(objc_autoreleasePoolPop);
#else
IMP lookUpMessage(id receiver, SEL selector) ZIB_SYMBOL(objc_msg_lookup);
// What Foundation hangs in for receivers without a method for the selector.
extern IMP (*makeForwarder)(id receiver, SEL selector) ZIB_SYMBOL(__objc_msg_forward2);
id retain(id object);
void release(id object);
void* pushAutoreleasePool();
void popAutoreleasePool(void* pool);
#endif

#undef ZIB_NOTHROW
#undef ZIB_SYMBOL

// Functions of the runtime have one nominal type; this gives one its true type back, or takes it
// away. Through `void (*)()`, which compilers accept as the neutral one.
template <class To, class Function>
To functionCast(Function* function) {
  return reinterpret_cast<To>(reinterpret_cast<void (*)()>(function));
}

#if defined(__APPLE__)

// What a message to nil gives is zero, of whatever scalar type.
inline constexpr bool nilGivesZero = true;

// The function that a message reaches. Apple's runtime looks it up inside objc_msgSend, which has
// to be called with the exact type of the method.
template <class Function>
Function* functionFor(id, SEL) {
  return functionCast<Function*>(&messageSend);
}

#else

// Not so for floating-point numbers.
inline constexpr bool nilGivesZero = false;

// GCC's runtime has object_getClass as an inline function only: the class is an object's first
// word.
inline Class classOf(id object) {
  return object == nullptr ? nullptr : *reinterpret_cast<Class*>(object);
}

// Throws the platform's own exception when the receiver does not know the selector.
template <class Function>
Function* functionFor(id receiver, SEL selector) {
  return functionCast<Function*>(lookUpMessage(receiver, selector));
}

#endif

}  // namespace zib::objc
