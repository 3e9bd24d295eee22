#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Dictionary.h"

#include <gtest/gtest.h>

#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::classNamed;
using zib::constantString;
using zib::Dictionary;
using zib::Null;
using zib::selector;
using zib::send;
using zib::Value;
using zib::ValueMap;
using zib::objc::id;
using zib::objc::UInteger;

class DictionaryTest : public test::PlatformTest {};

TEST_F(DictionaryTest, TheDefaultIsEmptyAndStillHasAnObject) {
  const Dictionary dictionary;
  EXPECT_TRUE(dictionary.empty());
  EXPECT_FALSE(dictionary.text("a"));
  EXPECT_FALSE(dictionary.text(constantString<"a">));
  EXPECT_EQ(dictionary.boolean(constantString<"a">), std::nullopt);
  EXPECT_TRUE(dictionary.values()->empty());
  EXPECT_EQ(send<UInteger>(dictionary.native(), selector<"count">()), 0U);
}

TEST_F(DictionaryTest, AnythingButADictionaryCountsAsEmpty) {
  EXPECT_TRUE(Dictionary::retained(nullptr).empty());
  EXPECT_TRUE(Dictionary::retained(zib::makeString("text").raw()).empty());
  EXPECT_TRUE(Dictionary::retained(zib::objectFrom(Value(zib::Array{1, 2})).raw()).empty());
  EXPECT_TRUE(Dictionary::retained(classNamed<"NSDictionary">().object()).empty());
  const zib::Object proxy =
      zib::Object::adopted(send<id>(classNamed<"NSProxy">().object(), selector<"alloc">()));
  EXPECT_TRUE(Dictionary::retained(proxy.raw()).empty());
}

TEST_F(DictionaryTest, KeepsThePlatformsOwnObject) {
  const zib::Object object = zib::objectFrom(ValueMap{{"a", "b"}});
  const auto owners = [&] { return send<UInteger>(object.raw(), selector<"retainCount">()); };
  EXPECT_EQ(owners(), 1U);
  {
    const Dictionary dictionary = Dictionary::retained(object.raw());
    EXPECT_EQ(dictionary.native(), object.raw());
    EXPECT_EQ(owners(), 2U);
    const Dictionary copy = dictionary;  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(owners(), 3U);
  }
  EXPECT_EQ(owners(), 1U);
}

TEST_F(DictionaryTest, OnlyTopLevelTextUnderExactlyTheKeyIsText) {
  const Dictionary dictionary = Dictionary::from({{"text", "value"},
                                                  {"empty", ""},
                                                  {"number", 5},
                                                  {"truth", true},
                                                  {"null", Null{}},
                                                  {"list", zib::Array{"text"}},
                                                  {"map", ValueMap{{"nested", "inside"}}}});
  EXPECT_EQ(dictionary.text(constantString<"text">).utf8(), "value");
  EXPECT_EQ(dictionary.text("text").utf8(), "value");
  EXPECT_TRUE(dictionary.text("empty"));
  EXPECT_EQ(dictionary.text("empty").utf8(), "");
  for (const char* key :
       {"number", "truth", "null", "list", "map", "nested", "Text", "text ", ""}) {
    EXPECT_FALSE(dictionary.text(key)) << key;
  }
}

TEST_F(DictionaryTest, OneAndZeroAreTruthValuesAndOtherNumbersAreNot) {
  const Dictionary dictionary = Dictionary::from({{"true", true},
                                                  {"false", false},
                                                  {"one", 1},
                                                  {"zero", 0},
                                                  {"oneAndNothing", 1.0},
                                                  {"two", 2},
                                                  {"half", 0.5},
                                                  {"text", "true"},
                                                  {"null", Null{}}});
  EXPECT_EQ(dictionary.boolean(constantString<"true">), true);
  EXPECT_EQ(dictionary.boolean(constantString<"false">), false);
  EXPECT_EQ(dictionary.boolean(constantString<"one">), true);
  EXPECT_EQ(dictionary.boolean(constantString<"zero">), false);
  EXPECT_EQ(dictionary.boolean(constantString<"oneAndNothing">), true);
  EXPECT_EQ(dictionary.boolean(constantString<"two">), std::nullopt);
  EXPECT_EQ(dictionary.boolean(constantString<"half">), std::nullopt);
  EXPECT_EQ(dictionary.boolean(constantString<"text">), std::nullopt);
  EXPECT_EQ(dictionary.boolean(constantString<"null">), std::nullopt);
  EXPECT_EQ(dictionary.boolean(constantString<"absent">), std::nullopt);
}

TEST_F(DictionaryTest, ValuesComeBackWhole) {
  const ValueMap values{{"text", "value"},
                        {"map", ValueMap{{"list", zib::Array{1, "two", Null{}, false}}}}};
  EXPECT_EQ(*Dictionary::from(values).values(), values);
}

TEST_F(DictionaryTest, KeysThatAreNoTextDoNotDisturbReading) {
  const zib::Object object = zib::objectFrom(ValueMap{{"a", "b"}});
  send<void>(object.raw(), selector<"setObject:forKey:">(), zib::makeString("number").raw(),
             zib::objectFrom(Value(7)).raw());
  send<void>(object.raw(), selector<"setObject:forKey:">(), zib::makeString("null").raw(),
             zib::objectFrom(Value()).raw());
  const Dictionary dictionary = Dictionary::retained(object.raw());
  EXPECT_EQ(dictionary.text("a").utf8(), "b");
  EXPECT_FALSE(dictionary.text("7"));
  EXPECT_EQ(dictionary.values()->size(), 3U);
}

}  // namespace
