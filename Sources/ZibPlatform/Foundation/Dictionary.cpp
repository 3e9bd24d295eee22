#include "ZibPlatform/Foundation/Dictionary.h"

#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

Dictionary Dictionary::retained(objc::id object) {
  return isKind<"NSDictionary">(object) ? Dictionary(Object::retained(object)) : Dictionary();
}

Dictionary Dictionary::from(const ValueMap& values) { return Dictionary(objectFrom(values)); }

std::optional<Dictionary> Dictionary::withTextKeys(const Object& object) {
  if (!isKind<"NSDictionary">(object.raw())) return std::nullopt;
  const AutoreleasePool pool;
  const objc::id keys = send<objc::id>(object.raw(), selector<"keyEnumerator">());
  while (const objc::id key = send<objc::id>(keys, selector<"nextObject">())) {
    if (!isString(key)) return std::nullopt;
  }
  return Dictionary(object);
}

bool Dictionary::empty() const {
  return send<objc::UInteger>(native_.raw(), selector<"count">()) == 0;
}

StringRef Dictionary::text(ConstantString key) const {
  return StringRef::of(send<objc::id>(native_.raw(), selector<"objectForKey:">(), key.object()));
}

std::optional<std::string> Dictionary::string(ConstantString key) const {
  return native_ ? stringForKey(key.object()) : std::nullopt;
}

std::optional<std::string> Dictionary::string(std::string_view key) const {
  return native_ ? stringForKey(makeString(key).raw()) : std::nullopt;
}

std::optional<std::string> Dictionary::stringForKey(objc::id key) const {
  const objc::id value = send<objc::id>(native_.raw(), selector<"objectForKey:">(), key);
  if (!isString(value)) return std::nullopt;
  return utf8From(value);
}

std::optional<bool> Dictionary::boolean(ConstantString key) const {
  if (!native_) return std::nullopt;
  const objc::id value = send<objc::id>(native_.raw(), selector<"objectForKey:">(), key.object());
  if (!isKind<"NSNumber">(value)) return std::nullopt;
  const auto number = send<double>(value, selector<"doubleValue">());
  if (number != 0 && number != 1) return std::nullopt;
  return number == 1;
}

Result<ValueMap> Dictionary::values() const {
  if (!native_) return ValueMap();
  const Result<Value> value = valueFrom(native_.raw());
  if (!value) return value.error();
  const auto* map = value->get<ValueMap>();
  return map == nullptr ? ValueMap() : *map;
}

Object Dictionary::native() const {
  static const objc::id emptyOne =
      send<objc::id>(classNamed<"NSDictionary">().object(), selector<"new">());
  return native_ ? native_ : Object::retained(emptyOne);
}

}  // namespace zib
