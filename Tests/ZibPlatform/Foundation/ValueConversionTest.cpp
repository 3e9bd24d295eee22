#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::Array;
using zib::classNamed;
using zib::Null;
using zib::Object;
using zib::objectFrom;
using zib::selector;
using zib::send;
using zib::Value;
using zib::valueFrom;
using zib::ValueMap;
using zib::objc::BOOL;
using zib::objc::id;

class ValueConversionTest : public test::FoundationTest {
 protected:
  static Value roundTrip(const Value& value) { return valueFrom(objectFrom(value).raw()); }
};

template <class T>
id number(zib::Selector maker, T value) {
  return send<id>(classNamed<"NSNumber">().object(), maker, value);
}

// The containers around `innermost`, outermost first. They are let go one after the other, since
// the platform's own way to free a deep one is recursive.
std::vector<Object> nested(std::size_t depth) {
  std::vector<Object> containers;
  Object inner = zib::makeString("innermost");
  for (std::size_t level = 0; level < depth; ++level) {
    Object outer = objectFrom(Value(Array()));
    send<void>(outer.raw(), selector<"addObject:">(), inner.raw());
    containers.insert(containers.end(), outer);
    inner = std::move(outer);
  }
  return {containers.rbegin(), containers.rend()};
}

std::size_t depthOf(const Value& value) {
  std::size_t depth = 0;
  const Value* at = &value;
  while (const auto* array = at->get<Array>()) {
    ++depth;
    at = &array->front();
  }
  return depth;
}

TEST_F(ValueConversionTest, EveryKindComesBackAsItself) {
  constexpr auto least = std::numeric_limits<std::int64_t>::min();
  constexpr auto largest = std::numeric_limits<std::int64_t>::max();
  constexpr auto largestUnsigned = std::numeric_limits<std::uint64_t>::max();
  for (const Value& value :
       {Value(),
        Value(true),
        Value(false),
        Value(0),
        Value(1),
        Value(-1),
        Value(least),
        Value(largest),
        Value(static_cast<std::uint64_t>(largest) + 1),
        Value(largestUnsigned),
        Value(1.0),
        Value(0.1),
        Value(-1e300),
        Value(""),
        Value("é😀"),
        Value(std::string("a\0b", 3)),
        Value(zib::Bytes()),
        Value(zib::Bytes{0, 1, 255}),
        Value(zib::Date{0}),
        Value(zib::Date{1.7e9}),
        Value(Array()),
        Value(ValueMap()),
        Value(Array{1, true, "a", Null{}, Array{2}, ValueMap{{"k", 0.5}}}),
        Value(ValueMap{{"", 1}, {"list", Array{}}, {"map", ValueMap{{"n", Null{}}}}})}) {
    EXPECT_EQ(roundTrip(value), value) << "alternative " << value.storage().index();
  }
}

TEST_F(ValueConversionTest, SpecialDoublesComeBack) {
  EXPECT_TRUE(std::isnan(*roundTrip(std::nan("")).get<double>()));
  EXPECT_TRUE(std::isinf(*roundTrip(HUGE_VAL).get<double>()));
  EXPECT_TRUE(std::signbit(*roundTrip(-0.0).get<double>()));
}

TEST_F(ValueConversionTest, OnlyANumberMadeFromABooleanIsOne) {
  EXPECT_EQ(valueFrom(number(selector<"numberWithBool:">(), BOOL{1})), Value(true));
  EXPECT_EQ(valueFrom(number(selector<"numberWithBool:">(), BOOL{0})), Value(false));
  EXPECT_EQ(valueFrom(number(selector<"numberWithInt:">(), 1)), Value(1));
  EXPECT_EQ(valueFrom(number(selector<"numberWithInt:">(), 0)), Value(0));
  EXPECT_EQ(valueFrom(number(selector<"numberWithChar:">(), static_cast<signed char>(1))),
            Value(1));
}

TEST_F(ValueConversionTest, NumbersOfOtherWidths) {
  EXPECT_EQ(valueFrom(number(selector<"numberWithChar:">(), static_cast<signed char>(-5))),
            Value(-5));
  EXPECT_EQ(valueFrom(number(selector<"numberWithFloat:">(), 0.5F)), Value(0.5));
  EXPECT_EQ(valueFrom(number(selector<"numberWithUnsignedInt:">(), 4'000'000'000U)),
            Value(std::int64_t{4'000'000'000}));
  EXPECT_EQ(valueFrom(number(selector<"numberWithUnsignedLongLong:">(), 7ULL)), Value(7));
}

TEST_F(ValueConversionTest, NilAndForeignRootsAreNull) {
  EXPECT_EQ(valueFrom(nullptr), Value());
  const Object proxy =
      Object::adopted(send<id>(classNamed<"NSProxy">().object(), selector<"alloc">()));
  EXPECT_EQ(valueFrom(proxy.raw()), Value());
}

TEST_F(ValueConversionTest, ASetIsAnArray) {
  const Object array = objectFrom(Value(Array{1, 2, 3}));
  const id set = send<id>(classNamed<"NSSet">().object(), selector<"setWithArray:">(), array.raw());
  const Value value = valueFrom(set);
  std::set<std::int64_t> elements;
  for (const Value& element : *value.get<Array>()) elements.insert(*element.get<std::int64_t>());
  EXPECT_EQ(elements, (std::set<std::int64_t>{1, 2, 3}));
}

TEST_F(ValueConversionTest, OtherObjectsAreTakenByTheirDescription) {
  const auto url = zib::URL::parse("https://example.com/a?b=c");
  EXPECT_EQ(valueFrom(url->native()), Value("https://example.com/a?b=c"));
}

TEST_F(ValueConversionTest, KeysThatAreNoTextAreTakenByTheirDescription) {
  const Object object = objectFrom(ValueMap());
  const auto set = [&](const Value& key, const Value& value) {
    send<void>(object.raw(), selector<"setObject:forKey:">(), objectFrom(value).raw(),
               objectFrom(key).raw());
  };
  set(5, "number");
  set("text", "string");
  EXPECT_EQ(valueFrom(object.raw()), Value(ValueMap{{"5", "number"}, {"text", "string"}}));
}

TEST_F(ValueConversionTest, KeysStayDistinctWhenTheirTextsCoincide) {
  const Object object = objectFrom(ValueMap());
  const auto set = [&](const Value& key, const Value& value) {
    send<void>(object.raw(), selector<"setObject:forKey:">(), objectFrom(value).raw(),
               objectFrom(key).raw());
  };
  set("5", "string");
  set(5, "number");
  const Value value = valueFrom(object.raw());
  ASSERT_EQ(value.get<ValueMap>()->size(), 1U);
  EXPECT_EQ(*value.get<ValueMap>()->find("5"), Value("string"));
}

TEST_F(ValueConversionTest, ADepthOfAThousandIsKept) {
  const auto containers = nested(1000);
  const Value value = valueFrom(containers.front().raw());
  EXPECT_EQ(depthOf(value), 1000U);
  const Object back = objectFrom(value);
  EXPECT_EQ(valueFrom(back.raw()), value);
}

TEST_F(ValueConversionTest, WhatIsDeeperThanTheLimitIsNull) {
  const auto containers = nested(100'000);
  const Value value = valueFrom(containers.front().raw());
  EXPECT_EQ(depthOf(value), static_cast<std::size_t>(zib::maximumNesting));
  EXPECT_EQ(depthOf(roundTrip(value)), static_cast<std::size_t>(zib::maximumNesting));
}

TEST_F(ValueConversionTest, TheLimitHoldsOnTheWayToThePlatformToo) {
  Value value;
  for (int level = 0; level < zib::maximumNesting + 500; ++level) {
    Array outer;
    outer.push_back(std::move(value));
    value = std::move(outer);
  }
  EXPECT_EQ(depthOf(roundTrip(value)), static_cast<std::size_t>(zib::maximumNesting));
}

}  // namespace
