// Swift's own strings, arrays, dictionaries and data, which a host in Swift hands over as they are:
// objects of the platform's classes whose methods are declared with signed integers and structures
// without a name.

#include <gtest/gtest.h>

#include <string>

#include "Tests/Support/Device.h"
#include "ZibC/zib.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/Structures.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using test::Device;
using zib::Class;
using zib::classNamed;
using zib::Object;
using zib::Range;
using zib::selector;
using zib::send;
using zib::ValueMap;
using zib::objc::id;
using zib::objc::IMP;
using zib::objc::Integer;
using zib::objc::SEL;
using zib::objc::UniChar;

constexpr std::u16string_view characters = u"gold é";
constexpr std::uint8_t someBytes[] = {1, 2, 3};

Integer lengthOfString(id, SEL) { return static_cast<Integer>(characters.size()); }
UniChar characterAt(id, SEL, Integer index) { return characters[static_cast<std::size_t>(index)]; }
void copyCharacters(id, SEL, UniChar* to, Range range) {
  characters.copy(reinterpret_cast<char16_t*>(to), range.length, range.location);
}

Integer one(id, SEL) { return 1; }
id elementAt(id, SEL, Integer) { return zib::constantString<"element">.object(); }

Integer lengthOfData(id, SEL) { return std::size(someBytes); }
const void* bytes(id, SEL) { return someBytes; }

struct MethodOfSwift {
  const char* name;
  IMP function;
  const char* types;
};

Object make(const char* name, Class superclass, std::initializer_list<MethodOfSwift> methods) {
  Class cls = Class::named(name);
  if (!cls) {
    cls = zib::ClassBuilder(name, superclass).registerClass();
    for (const MethodOfSwift& each : methods) {
      EXPECT_TRUE(cls.addMethod(zib::Selector(each.name), each.function, each.types));
    }
  }
  // Without init, by which an abstract class of the platform puts another object in its place.
  return Object::adopted(send<id>(cls.object(), selector<"alloc">()));
}

template <class Function>
IMP implementation(Function* function) {
  return zib::objc::functionCast<IMP>(function);
}

Object makeString() {
  return make("SwiftStringStorage", classNamed<"NSString">(),
              {{"length", implementation(&lengthOfString), "q16@0:8"},
               {"characterAtIndex:", implementation(&characterAt), "S24@0:8q16"},
               {"getCharacters:range:", implementation(&copyCharacters), "v40@0:8^S16{qq}24"}});
}

Object makeArray() {
  return make("SwiftArrayStorage", classNamed<"NSArray">(),
              {{"count", implementation(&one), "q16@0:8"},
               {"objectAtIndex:", implementation(&elementAt), "@24@0:8q16"}});
}

Object makeData() {
  return make("SwiftData", classNamed<"NSData">(),
              {{"length", implementation(&lengthOfData), "q16@0:8"},
               {"bytes", implementation(&bytes), "r^v16@0:8"}});
}

id valueForKey(id, SEL, id key) {
  static const id string = makeString().relinquish();
  static const id array = makeArray().relinquish();
  static const id data = makeData().relinquish();
  const std::string name = zib::utf8From(key);
  if (name == "club") return string;
  if (name == "list") return array;
  return name == "data" ? data : nullptr;
}
id keys(id, SEL) {
  static const Object all = zib::objectFrom(zib::Value(zib::Array{"club", "list", "data"}));
  return send<id>(all.raw(), selector<"objectEnumerator">());
}
Integer three(id, SEL) { return 3; }

Object makeDictionary() {
  return make("SwiftDictionaryStorage", classNamed<"NSDictionary">(),
              {{"count", implementation(&three), "q16@0:8"},
               {"objectForKey:", implementation(&valueForKey), "@24@0:8@16"},
               {"keyEnumerator", implementation(&keys), "@16@0:8"}});
}

const ValueMap content{
    {"club", "gold é"}, {"list", zib::Array{"element"}}, {"data", zib::Bytes{1, 2, 3}}};

TEST(SwiftObjectsTest, AreReadWhole) {
  const Device device;
  const Object dictionary = makeDictionary();
  const auto values = zib::Dictionary::retained(dictionary.raw()).values();
  ASSERT_TRUE(values);
  EXPECT_EQ(*values, content);
}

TEST(SwiftObjectsTest, AreTheFieldsOfAnEvent) {
  const Device device;
  const Object dictionary = makeDictionary();
  ZibMessaging::shared().trackNotificationOpened(zib::Dictionary::retained(dictionary.raw()));
  ASSERT_EQ(device.entries("event").size(), 1U);
  EXPECT_EQ(device.entries("event").front().at("data").at("club"), "gold é");
}

TEST(SwiftObjectsTest, AreTokensTextsAndProperties) {
  const Device device;
  const Object token = makeData();
  zib_messaging_set_push_token(token.raw());
  EXPECT_EQ(ZibMessaging::shared().apnsToken(), (zib::Bytes{1, 2, 3}));
  const zib_object event =
      zib_payload_builder_create_event_payload(zib_text_of("visit"), makeDictionary().raw());
  EXPECT_EQ(*zib::Dictionary::retained(event).values()->find("properties"), zib::Value(content));
  zib_object_release(event);
  EXPECT_TRUE(device.errorLines().empty());
}

}  // namespace
