#include "ZibPlatform/Foundation/ValueConversion.h"

#include <optional>
#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Elements.h"
#include "ZibPlatform/Foundation/JSONText.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

Object objectFrom(const Value& value, int nesting);

objc::id numberWithBool(bool value) noexcept {
  return sendToClass<"NSNumber", "numberWithBool:">(static_cast<objc::BOOL>(value));
}

// Both platforms give booleans a class of their own, private but the same for true and false.
bool isBoolean(objc::id number) {
  static const Class booleanClass = Class::ofObject(numberWithBool(true));
  return Class::ofObject(number) == booleanClass;
}

void takeNumber(objc::id number, Value& into) {
  if (isBoolean(number)) {
    into.emplace<bool>(send<objc::BOOL>(number, selector<"boolValue">()) != 0);
    return;
  }
  const std::string_view type = send<const char*>(number, selector<"objCType">());
  if (type == "d" || type == "f") {
    into.emplace<double>(send<double>(number, selector<"doubleValue">()));
  } else if (type == "Q" || type == "L") {
    into = std::uint64_t{send<unsigned long long>(number, selector<"unsignedLongLongValue">())};
  } else {
    into.emplace<std::int64_t>(send<long long>(number, selector<"longLongValue">()));
  }
}

std::string description(objc::id object) {
  return StringRef::of(send<objc::id>(object, selector<"description">())).utf8();
}

void takeScalar(objc::id object, Value& into) {
  if (isKind<"NSNumber">(object)) {
    takeNumber(object, into);
  } else if (isKind<"NSData">(object)) {
    const auto bytes = bytesOf(object);
    into.emplace<Bytes>(bytes.begin(), bytes.end());
  } else if (isKind<"NSDate">(object)) {
    into.emplace<Date>(Date{send<double>(object, selector<"timeIntervalSince1970">())});
  } else if (!isKind<"NSNull">(object)) {
    into.emplace<std::string>(description(object));
  }
}

// Takes an object apart, as far as is allowed.
class Taker {
 public:
  explicit Taker(Extent allowed) noexcept : allowed_(allowed) {}

  // `into` is the null marker, and stays so where there is an error.
  void take(objc::id object, int level, Value& into);
  [[nodiscard]] std::optional<Error>& error() noexcept { return error_; }

 private:
  void takeDictionary(objc::id dictionary, int level, ValueMap& map);
  void takeCollection(objc::id collection, int level, Array& array);
  void fail(ValueError problem);
  // What is taken now, of the outermost container's elements.
  void moveTo(int level, std::string_view key) {
    if (level == 1) place_ = std::string(key);
  }
  [[nodiscard]] std::string describePlace() const;

  Extent allowed_;
  std::size_t taken_ = 0;
  std::string place_;
  std::optional<Error> error_;
};

// Keys can be as long as a payload.
std::string_view beginningOf(std::string_view text) {
  constexpr std::size_t longest = 40;
  if (text.size() <= longest) return text;
  std::size_t end = longest;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end);
}

std::string Taker::describePlace() const {
  return place_.empty() ? "" : " at " + jsonTextOf(Value(beginningOf(place_)));
}

void Taker::fail(ValueError problem) {
  if (error_) return;
  const bool isDeep = problem == ValueError::nestedTooDeep;
  const std::size_t limit = isDeep ? static_cast<std::size_t>(allowed_.levels) : allowed_.values;
  error_.emplace(
      Error{std::string(valueErrorDomain),
            static_cast<std::int64_t>(problem),
            joined(isDeep ? "nested too deep" : "too many values", describePlace(), "; ",
                   std::to_string(limit), isDeep ? " levels are allowed" : " are allowed"),
            {}});
}

// Keys that differ may have one text: of those, the entry of a string key stays.
// NOLINTNEXTLINE(misc-no-recursion): as deep as is allowed
void Taker::takeDictionary(objc::id dictionary, int level, ValueMap& map) {
  const auto append = [&](const std::string& text, objc::id key) {
    moveTo(level, text);
    const objc::id value = send<objc::id>(dictionary, selector<"objectForKey:">(), key);
    take(value, level, map.append(text));
  };
  bool hasOtherKeys = false;
  for (const objc::id key : keysOf(dictionary)) {
    if (const auto text = StringRef::of(key)) {
      append(text.utf8(), key);
    } else {
      hasOtherKeys = true;
    }
    if (error_) return;
  }
  if (hasOtherKeys) {
    for (const objc::id key : keysOf(dictionary)) {
      if (!isKind<"NSString">(key)) append(description(key), key);
      if (error_) return;
    }
  }
  map.dropRepeatedKeys();
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as is allowed
void Taker::takeCollection(objc::id collection, int level, Array& array) {
  for (const objc::id element : elements(collection)) {
    moveTo(level, std::to_string(array.size()));
    take(element, level, array.emplace_back());
    if (error_) return;
  }
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as is allowed
void Taker::take(objc::id object, int level, Value& into) {
  if (++taken_ > allowed_.values) fail(ValueError::tooManyValues);
  if (error_ || !isNSObject(object)) return;
  if (const auto text = StringRef::of(object)) {
    into.setText(Utf8(text).view());
    return;
  }
  const bool isDictionary = isKind<"NSDictionary">(object);
  const bool isCollection = isKind<"NSArray">(object) || isKind<"NSSet">(object);
  if (!isDictionary && !isCollection) {
    takeScalar(object, into);
  } else if (level >= allowed_.levels) {
    fail(ValueError::nestedTooDeep);
  } else if (isDictionary) {
    takeDictionary(object, level + 1, into.emplace<ValueMap>());
  } else {
    takeCollection(object, level + 1, into.emplace<Array>());
  }
}

Object objectFromArray(const Array& array, int nesting) {
  Object result = create<"NSMutableArray">();
  for (const Value& element : array) {
    send<void>(result.raw(), selector<"addObject:">(), objectFrom(element, nesting).raw());
  }
  return result;
}

Object objectFromMap(const ValueMap& map, int nesting) {
  Object result = create<"NSMutableDictionary">();
  for (const Member& member : map) {
    send<void>(result.raw(), selector<"setObject:forKey:">(),
               objectFrom(member.value, nesting).raw(), makeString(member.key).raw());
  }
  return result;
}

Object null() { return Object::retained(sendToClass<"NSNull", "null">()); }

// One overload for each alternative of a value.
struct ObjectMaker {
  int nesting;

  Object operator()(Null) const { return null(); }
  Object operator()(bool value) const { return Object::retained(numberWithBool(value)); }
  Object operator()(std::int64_t value) const {
    return create<"NSNumber", "initWithLongLong:">(static_cast<long long>(value));
  }
  Object operator()(std::uint64_t value) const {
    return create<"NSNumber", "initWithUnsignedLongLong:">(static_cast<unsigned long long>(value));
  }
  Object operator()(double value) const { return create<"NSNumber", "initWithDouble:">(value); }
  Object operator()(const std::string& value) const { return makeString(value); }
  Object operator()(const Bytes& value) const { return makeData(value); }
  Object operator()(Date value) const {
    return Object::retained(
        sendToClass<"NSDate", "dateWithTimeIntervalSince1970:">(value.secondsSince1970));
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

Result<Value> valueFrom(objc::id object, Extent allowed) {
  Taker taker(allowed);
  Value value;
  taker.take(object, 0, value);
  if (taker.error()) return *std::move(taker.error());
  return value;
}
Object objectFrom(const Value& value) { return objectFrom(value, 0); }
Object objectFrom(const ValueMap& map) { return objectFromMap(map, 1); }

}  // namespace zib
