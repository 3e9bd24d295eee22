#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <cmath>
#include <limits>
#include <optional>
#include <set>

#include "ZibPlatform/Foundation/JSONText.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
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
  static Value roundTrip(const Value& value) { return *valueFrom(objectFrom(value).raw()); }
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
  EXPECT_EQ(*valueFrom(number(selector<"numberWithBool:">(), BOOL{1})), Value(true));
  EXPECT_EQ(*valueFrom(number(selector<"numberWithBool:">(), BOOL{0})), Value(false));
  EXPECT_EQ(*valueFrom(number(selector<"numberWithInt:">(), 1)), Value(1));
  EXPECT_EQ(*valueFrom(number(selector<"numberWithInt:">(), 0)), Value(0));
  EXPECT_EQ(*valueFrom(number(selector<"numberWithChar:">(), static_cast<signed char>(1))),
            Value(1));
}

TEST_F(ValueConversionTest, NumbersOfOtherWidths) {
  EXPECT_EQ(*valueFrom(number(selector<"numberWithChar:">(), static_cast<signed char>(-5))),
            Value(-5));
  EXPECT_EQ(*valueFrom(number(selector<"numberWithFloat:">(), 0.5F)), Value(0.5));
  EXPECT_EQ(*valueFrom(number(selector<"numberWithUnsignedInt:">(), 4'000'000'000U)),
            Value(std::int64_t{4'000'000'000}));
  EXPECT_EQ(*valueFrom(number(selector<"numberWithUnsignedLongLong:">(), 7ULL)), Value(7));
}

TEST_F(ValueConversionTest, NilAndForeignRootsAreNull) {
  EXPECT_EQ(*valueFrom(nullptr), Value());
  const Object proxy =
      Object::adopted(send<id>(classNamed<"NSProxy">().object(), selector<"alloc">()));
  EXPECT_EQ(*valueFrom(proxy.raw()), Value());
}

TEST_F(ValueConversionTest, ASetIsAnArray) {
  const Object array = objectFrom(Value(Array{1, 2, 3}));
  const id set = send<id>(classNamed<"NSSet">().object(), selector<"setWithArray:">(), array.raw());
  const Value value = *valueFrom(set);
  std::set<std::int64_t> elements;
  for (const Value& element : *value.get<Array>()) elements.insert(*element.get<std::int64_t>());
  EXPECT_EQ(elements, (std::set<std::int64_t>{1, 2, 3}));
}

TEST_F(ValueConversionTest, OtherObjectsAreTakenByTheirDescription) {
  const auto url = zib::URL::parse("https://example.com/a?b=c");
  EXPECT_EQ(*valueFrom(url->native()), Value("https://example.com/a?b=c"));
}

TEST_F(ValueConversionTest, KeysThatAreNoTextAreTakenByTheirDescription) {
  const Object object = objectFrom(ValueMap());
  const auto set = [&](const Value& key, const Value& value) {
    send<void>(object.raw(), selector<"setObject:forKey:">(), objectFrom(value).raw(),
               objectFrom(key).raw());
  };
  set(5, "number");
  set("text", "string");
  EXPECT_EQ(*valueFrom(object.raw()), Value(ValueMap{{"5", "number"}, {"text", "string"}}));
}

TEST_F(ValueConversionTest, KeysStayDistinctWhenTheirTextsCoincide) {
  const Object object = objectFrom(ValueMap());
  const auto set = [&](const Value& key, const Value& value) {
    send<void>(object.raw(), selector<"setObject:forKey:">(), objectFrom(value).raw(),
               objectFrom(key).raw());
  };
  set("5", "string");
  set(5, "number");
  const Value value = *valueFrom(object.raw());
  ASSERT_EQ(value.get<ValueMap>()->size(), 1U);
  EXPECT_EQ(*value.get<ValueMap>()->find("5"), Value("string"));
}

constexpr std::size_t deepest = 256;

TEST_F(ValueConversionTest, ADepthOf256LevelsIsKept) {
  const auto containers = nested(deepest);
  const Value value = *valueFrom(containers.front().raw());
  EXPECT_EQ(depthOf(value), deepest);
  const Object back = objectFrom(value);
  EXPECT_EQ(*valueFrom(back.raw()), value);
}

std::string describe(const zib::Error& error) {
  return error.domain + " " + std::to_string(error.code) + ": " + error.description;
}

TEST_F(ValueConversionTest, WhatIsDeeperIsAnErrorThatSaysWhere) {
  const std::string expected = "ZibMessaging.ZibValueError 0: nested too deep at ";
  for (const std::size_t depth : {deepest + 1, std::size_t{100'000}}) {
    const auto containers = nested(depth);
    const auto taken = valueFrom(containers.front().raw());
    ASSERT_FALSE(taken);
    EXPECT_EQ(describe(taken.error()), expected + "\"0\"; 256 levels are allowed");
    const Object root = objectFrom(ValueMap{{"club", "gold"}});
    send<void>(root.raw(), selector<"setObject:forKey:">(), containers.front().raw(),
               zib::makeString("a\nb").raw());
    EXPECT_EQ(describe(valueFrom(root.raw()).error()),
              expected + R"("a\u000ab"; 256 levels are allowed)");
  }
}

TEST_F(ValueConversionTest, AContainerThatHoldsItselfIsAnError) {
  const Object array = objectFrom(Value(Array()));
  send<void>(array.raw(), selector<"addObject:">(), array.raw());
  EXPECT_FALSE(valueFrom(array.raw()));
  send<void>(array.raw(), selector<"removeAllObjects">());
}

// Each holds the one before it twice, so that there are 2^depth ways to the innermost.
std::vector<Object> shared(std::size_t depth) {
  std::vector<Object> containers{zib::makeString("innermost")};
  for (std::size_t level = 0; level < depth; ++level) {
    const Object outer = objectFrom(Value(Array()));
    send<void>(outer.raw(), selector<"addObject:">(), containers.back().raw());
    send<void>(outer.raw(), selector<"addObject:">(), containers.back().raw());
    containers.push_back(outer);
  }
  return containers;
}

TEST_F(ValueConversionTest, AContainerThatIsSharedOftenIsAnErrorAndNoHang) {
  const auto containers = shared(40);
  const auto taken = valueFrom(containers.back().raw());
  ASSERT_FALSE(taken);
  EXPECT_EQ(describe(taken.error()),
            "ZibMessaging.ZibValueError 1: too many values at \"0\"; 100000 are allowed");
}

TEST_F(ValueConversionTest, AHundredThousandValuesAreKept) {
  const Object array = objectFrom(Value(Array(99'999, Value(1))));
  EXPECT_EQ(valueFrom(array.raw())->get<Array>()->size(), 99'999U);
  send<void>(array.raw(), selector<"addObject:">(), zib::makeString("one more").raw());
  EXPECT_EQ(describe(valueFrom(array.raw()).error()),
            "ZibMessaging.ZibValueError 1: too many values at \"99999\"; 100000 are allowed");
}

TEST_F(ValueConversionTest, ALongKeyIsCutInTheError) {
  const Object root = objectFrom(ValueMap());
  const auto containers = nested(deepest);
  send<void>(root.raw(), selector<"setObject:forKey:">(), containers.front().raw(),
             zib::makeString(std::string(39, 'k') + "é" + std::string(1000, 'k')).raw());
  EXPECT_EQ(valueFrom(root.raw()).error().description,
            "nested too deep at \"" + std::string(39, 'k') + "\"; 256 levels are allowed");
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t framesGrowBy = 8;
#elif defined(__has_feature)
constexpr std::size_t framesGrowBy =
    __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) ? 8 : 1;
#else
constexpr std::size_t framesGrowBy = 1;
#endif

struct OnSmallStack {
  id object;
  std::optional<zib::Result<Value>> taken;
  bool isEqual = false;

  // Everything that goes as deep as the value: taking, copying, comparing, writing, freeing.
  void run() {
    taken = valueFrom(object);
    if (!*taken) return;
    const Value copy = **taken;
    isEqual = copy == **taken && zib::jsonTextOf(copy) == zib::jsonTextOf(**taken) &&
              *valueFrom(objectFrom(copy).raw()) == copy;
  }
};

// As much stack as a phone's secondary threads have.
void runOnSmallStack(OnSmallStack& work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 512 * 1024 * framesGrowBy), 0);
  pthread_t thread{};
  const auto run = [](void* context) -> void* {
    const zib::AutoreleasePool pool;
    static_cast<OnSmallStack*>(context)->run();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

TEST_F(ValueConversionTest, TheStackOfASecondaryThreadIsEnough) {
  for (const std::size_t depth : {deepest, std::size_t{2000}}) {
    const auto containers = nested(depth);
    OnSmallStack work{containers.front().raw(), std::nullopt};
    runOnSmallStack(work);
    EXPECT_EQ(work.isEqual, depth == deepest);
    EXPECT_EQ(static_cast<bool>(*work.taken), depth == deepest);
  }
}

TEST_F(ValueConversionTest, OnTheWayToThePlatformWhatIsDeeperThanTheLimitIsNull) {
  Value value;
  for (int level = 0; level < zib::maximumNesting + 500; ++level) {
    Array outer;
    outer.push_back(std::move(value));
    value = std::move(outer);
  }
  const zib::Extent everything{.levels = 10'000, .values = 10'000};
  EXPECT_EQ(depthOf(*valueFrom(objectFrom(value).raw(), everything)),
            static_cast<std::size_t>(zib::maximumNesting));
}

}  // namespace
