// What Apple's object runtime has and GCC's lacks, or has in another form. Ownership is a message
// to the object, as GNUstep's Foundation knows no other; sending is in Calls_*.S.

#include "Types.h"

struct objc_object;
struct objc_class;
struct objc_method;
struct objc_selector;
using id = objc_object*;
using Class = objc_class*;
using SEL = const objc_selector*;
using Function = id (*)(id, SEL, ...);

extern "C" {

Function objc_msg_lookup(id receiver, SEL selector);
SEL sel_registerName(const char* name);
Class objc_lookUpClass(const char* name);
unsigned char class_addMethod(Class cls, SEL selector, void (*function)(), const char* types);
const char* method_getTypeEncoding(objc_method* method);
objc_method* class_getInstanceMethod(Class cls, SEL selector);
Function method_getImplementation(objc_method* method);
void zib_forward();  // in Calls_*.S

// How Foundation makes GCC's runtime forward.
extern Function (*__objc_msg_forward2)(id receiver, SEL selector);

// Stands in for a function: in GCC's runtime it is inline, the class is an object's first word.
Class object_getClass(id object) {
  return object == nullptr ? nullptr : *reinterpret_cast<Class*>(object);
}
}

namespace {

id send(id receiver, const char* name) {
  const SEL selector = sel_registerName(name);
  return reinterpret_cast<id (*)(id, SEL)>(objc_msg_lookup(receiver, selector))(receiver, selector);
}

}  // namespace

extern "C" {

// Stand in for the calls that the compiler makes for owners.

id objc_retain(id object) { return object == nullptr ? nullptr : send(object, "retain"); }

void objc_release(id object) {
  if (object != nullptr) send(object, "release");
}

void* objc_autoreleasePoolPush() {
  return send(reinterpret_cast<id>(objc_lookUpClass("NSAutoreleasePool")), "new");
}

void objc_autoreleasePoolPop(void* pool) { send(static_cast<id>(pool), "drain"); }

// Stand in for the functions of the same names, for BOOL in types.

bool zib_shim_class_addMethod(Class cls, SEL selector, void (*function)(), const char* types) {
  return class_addMethod(cls, selector, function, withBool(types, boolThere, boolHere)) != 0;
}

const char* zib_shim_method_getTypeEncoding(objc_method* method) {
  return withBool(method_getTypeEncoding(method), boolHere, boolThere);
}

// Stands in for the function of the same name: GCC's answers for a method that the class lacks with
// what forwards for one receiver, the platform's with what does so for any.
Function zib_shim_class_getMethodImplementation(Class cls, SEL selector) {
  objc_method* const method = class_getInstanceMethod(cls, selector);
  return method == nullptr ? reinterpret_cast<Function>(&zib_forward)
                           : method_getImplementation(method);
}

// For zib_forward.
Function zib_forwarder_of(id receiver, SEL selector) {
  return __objc_msg_forward2(receiver, selector);
}
}
