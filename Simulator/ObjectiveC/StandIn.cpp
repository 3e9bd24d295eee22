#include "Simulator/ObjectiveC/StandIn.h"

#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Send.h"

using zib::Class;
using zib::classNamed;
using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

namespace sim {
namespace {

constexpr const char* storageName = "standInProperties";

id storage(id object) { return static_cast<id>(pointerVariable(object, storageName)); }

id getObject(id self, SEL getter) { return property(self, zib::objc::nameOfSelector(getter)); }

UInteger getUnsigned(id self, SEL getter) {
  return static_cast<UInteger>(send<unsigned long long>(
      property(self, zib::objc::nameOfSelector(getter)), selector<"unsignedLongLongValue">()));
}

void dealloc(id self, SEL command) {
  zib::objc::release(storage(self));
  deallocInherited(self, command);
}

Class registerOrderedSet() {
  struct Methods {
    static id elements(id self) { return property(self, "elements"); }
    static UInteger count(id self, SEL) {
      return send<UInteger>(elements(self), selector<"count">());
    }
    static id member(id self, SEL, id object) {
      const auto index = send<UInteger>(elements(self), selector<"indexOfObject:">(), object);
      const bool isFound = index < count(self, nullptr);
      return isFound ? send<id>(elements(self), selector<"objectAtIndex:">(), index) : nullptr;
    }
    static id objectEnumerator(id self, SEL) {
      return send<id>(elements(self), selector<"objectEnumerator">());
    }
  };
  const Class cls = registerStandIn(orderedSetClass, classNamed<"NSSet">(), {});
  installMethod(cls, "count", &Methods::count);
  installMethod(cls, "member:", &Methods::member);
  installMethod(cls, "objectEnumerator", &Methods::objectEnumerator);
  return cls;
}

}  // namespace

Class registerStandIn(const char* name, Class superclass, const StandInProperties& properties) {
  objc_class* const raw = zib::objc::allocateClassPair(superclass.raw(), name, 0);
  if (raw == nullptr) return Class::named(name);
  addPointerVariable(raw, storageName, "@");
  zib::objc::registerClassPair(raw);
  const Class cls(raw);
  for (const char* object : properties.objects) installMethod(cls, object, &getObject);
  for (const char* number : properties.unsignedIntegers) installMethod(cls, number, &getUnsigned);
  installMethod(cls, "dealloc", &dealloc);
  return cls;
}

Object makeStandIn(Class cls) {
  Object object = zib::create(cls);
  object_setInstanceVariable(object.raw(), storageName,
                             zib::create<"NSMutableDictionary">().relinquish());
  return object;
}

void setProperty(id object, std::string_view name, const Object& value) {
  const Object key = zib::makeString(name);
  if (value) {
    send<void>(storage(object), selector<"setObject:forKey:">(), value.raw(), key.raw());
  } else {
    send<void>(storage(object), selector<"removeObjectForKey:">(), key.raw());
  }
}

void setProperty(id object, std::string_view name, const zib::Value& value) {
  setProperty(object, name, zib::objectFrom(value));
}

id property(id object, std::string_view name) {
  return send<id>(storage(object), selector<"objectForKey:">(), zib::makeString(name).raw());
}

Object makeOrderedSet(const std::vector<Object>& elements) {
  static const Class cls = registerOrderedSet();
  const Object array = zib::create<"NSMutableArray">();
  for (const Object& element : elements) {
    send<void>(array.raw(), selector<"addObject:">(), element.raw());
  }
  Object set = makeStandIn(cls);
  setProperty(set.raw(), "elements", array);
  return set;
}

}  // namespace sim
