#include "ZibPlatform/Foundation/ValueConversion.h"

#include <set>
#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

Value valueFrom(objc::id object, int nesting);
Object objectFrom(const Value& value, int nesting);

objc::id numberWithBool(bool value) {
  return send<objc::id>(classNamed<"NSNumber">().object(), selector<"numberWithBool:">(),
                        static_cast<objc::BOOL>(value));
}

// Both platforms give booleans a class of their own, private but the same for true and false.
bool isBoolean(objc::id number) {
  static const Class booleanClass = Class::ofObject(numberWithBool(true));
  return Class::ofObject(number) == booleanClass;
}

Value valueFromNumber(objc::id number) {
  if (isBoolean(number)) return send<objc::BOOL>(number, selector<"boolValue">()) != 0;
  const std::string_view type = send<const char*>(number, selector<"objCType">());
  if (type == "d" || type == "f") return send<double>(number, selector<"doubleValue">());
  if (type == "Q" || type == "L") {
    return std::uint64_t{send<unsigned long long>(number, selector<"unsignedLongLongValue">())};
  }
  return std::int64_t{send<long long>(number, selector<"longLongValue">())};
}

template <class Use>
void forEach(objc::id collection, Selector enumerator, Use use) {
  const objc::id objects = send<objc::id>(collection, enumerator);
  while (const objc::id object = send<objc::id>(objects, selector<"nextObject">())) use(object);
}

std::string description(objc::id object) {
  const objc::id text = send<objc::id>(object, selector<"description">());
  return isString(text) ? utf8From(text) : std::string();
}

// Keys that differ may have one text: of those, the entry of a string key stays.
Value valueFromDictionary(objc::id dictionary, int nesting) {
  ValueMap map;
  std::set<std::string> texts;
  const auto append = [&](const std::string& text, objc::id key) {
    if (!texts.insert(text).second) return;
    const objc::id value = send<objc::id>(dictionary, selector<"objectForKey:">(), key);
    map.append(text, valueFrom(value, nesting));
  };
  bool hasOtherKeys = false;
  forEach(dictionary, selector<"keyEnumerator">(), [&](objc::id key) {
    if (isString(key)) {
      append(utf8From(key), key);
    } else {
      hasOtherKeys = true;
    }
  });
  if (!hasOtherKeys) return map;
  forEach(dictionary, selector<"keyEnumerator">(), [&](objc::id key) {
    if (!isString(key)) append(description(key), key);
  });
  return map;
}

Value valueFromCollection(objc::id collection, int nesting) {
  Array array;
  forEach(collection, selector<"objectEnumerator">(),
          [&](objc::id element) { array.push_back(valueFrom(element, nesting)); });
  return array;
}

Value valueFrom(objc::id object, int nesting) {
  if (object == nullptr || !isNSObject(object)) return Null{};
  if (isString(object)) return utf8From(object);
  if (isKindOf(object, classNamed<"NSNumber">())) return valueFromNumber(object);
  if (isKindOf(object, classNamed<"NSNull">())) return Null{};
  if (isData(object)) {
    const auto bytes = bytesOf(object);
    return Bytes(bytes.begin(), bytes.end());
  }
  if (isKindOf(object, classNamed<"NSDate">())) {
    return Date{send<double>(object, selector<"timeIntervalSince1970">())};
  }
  const bool isDictionary = isKindOf(object, classNamed<"NSDictionary">());
  const bool isCollection =
      isKindOf(object, classNamed<"NSArray">()) || isKindOf(object, classNamed<"NSSet">());
  if (!isDictionary && !isCollection) return description(object);
  if (nesting >= maximumNesting) return Null{};
  return isDictionary ? valueFromDictionary(object, nesting + 1)
                      : valueFromCollection(object, nesting + 1);
}

Object newObject(Class cls) {
  return Object::adopted(send<objc::id>(cls.object(), selector<"new">()));
}

Object objectFromArray(const Array& array, int nesting) {
  Object result = newObject(classNamed<"NSMutableArray">());
  for (const Value& element : array) {
    send<void>(result.raw(), selector<"addObject:">(), objectFrom(element, nesting).raw());
  }
  return result;
}

Object objectFromMap(const ValueMap& map, int nesting) {
  Object result = newObject(classNamed<"NSMutableDictionary">());
  for (const Member& member : map) {
    send<void>(result.raw(), selector<"setObject:forKey:">(),
               objectFrom(member.value, nesting).raw(), makeString(member.key).raw());
  }
  return result;
}

Object null() {
  return Object::retained(send<objc::id>(classNamed<"NSNull">().object(), selector<"null">()));
}

// One overload for each alternative of a value.
struct ObjectMaker {
  int nesting;

  template <class T>
  static Object number(Selector initialiser, T value) {
    const objc::id allocated =
        send<objc::id>(classNamed<"NSNumber">().object(), selector<"alloc">());
    return Object::adopted(send<objc::id>(allocated, initialiser, value));
  }

  Object operator()(Null) const { return null(); }
  Object operator()(bool value) const { return Object::retained(numberWithBool(value)); }
  Object operator()(std::int64_t value) const {
    return number(selector<"initWithLongLong:">(), static_cast<long long>(value));
  }
  Object operator()(std::uint64_t value) const {
    return number(selector<"initWithUnsignedLongLong:">(), static_cast<unsigned long long>(value));
  }
  Object operator()(double value) const { return number(selector<"initWithDouble:">(), value); }
  Object operator()(const std::string& value) const { return makeString(value); }
  Object operator()(const Bytes& value) const { return makeData(value); }
  Object operator()(Date value) const {
    return Object::retained(send<objc::id>(classNamed<"NSDate">().object(),
                                           selector<"dateWithTimeIntervalSince1970:">(),
                                           value.secondsSince1970));
  }
  Object operator()(const Array& value) const {
    return nesting >= maximumNesting ? null() : objectFromArray(value, nesting + 1);
  }
  Object operator()(const ValueMap& value) const {
    return nesting >= maximumNesting ? null() : objectFromMap(value, nesting + 1);
  }
};

Object objectFrom(const Value& value, int nesting) { return value.visit(ObjectMaker{nesting}); }

}  // namespace

Value valueFrom(objc::id object) { return valueFrom(object, 0); }
Object objectFrom(const Value& value) { return objectFrom(value, 0); }
Object objectFrom(const ValueMap& map) { return objectFromMap(map, 1); }

}  // namespace zib
