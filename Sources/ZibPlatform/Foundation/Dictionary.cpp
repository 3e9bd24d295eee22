#include "ZibPlatform/Foundation/Dictionary.h"

#include "ZibPlatform/Foundation/Elements.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

Dictionary Dictionary::retained(objc::id object) {
  return Dictionary(Object::retained(cast<"NSDictionary">(object)));
}

Dictionary Dictionary::from(const ValueMap& values) { return Dictionary(objectFrom(values)); }

std::optional<Dictionary> Dictionary::withTextKeys(const Object& object) {
  if (!isKind<"NSDictionary">(object.raw())) return std::nullopt;
  const AutoreleasePool pool;
  for (const objc::id key : keysOf(object.raw())) {
    if (!isKind<"NSString">(key)) return std::nullopt;
  }
  return Dictionary(object);
}

bool Dictionary::empty() const {
  return send<objc::UInteger>(Handle::native(), selector<"count">()) == 0;
}

objc::id Dictionary::valueOf(objc::id key) const {
  return send<objc::id>(Handle::native(), selector<"objectForKey:">(), key);
}

StringRef Dictionary::text(const ConstantString& key) const {
  return StringRef::of(valueOf(key.object()));
}

StringRef Dictionary::text(std::string_view key) const {
  return StringRef::of(valueOf(makeString(key).raw()));
}

std::optional<bool> Dictionary::boolean(const ConstantString& key) const {
  const objc::id value = cast<"NSNumber">(valueOf(key.object()));
  if (value == nullptr) return std::nullopt;
  const auto number = send<double>(value, selector<"doubleValue">());
  if (number != 0 && number != 1) return std::nullopt;
  return number == 1;
}

Result<ValueMap> Dictionary::values() const {
  Result<Value> value = valueFrom(Handle::native());
  if (!value) return std::move(value).error();
  auto* map = (*value).get<ValueMap>();
  return map == nullptr ? ValueMap() : std::move(*map);
}

objc::id Dictionary::native() const {
  static const objc::id emptyOne = []() noexcept {
    return create<"NSDictionary">().relinquish();
  }();
  const objc::id own = Handle::native();
  return own == nullptr ? emptyOne : own;
}

}  // namespace zib
