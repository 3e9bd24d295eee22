#include "ZibPlatform/Foundation/Value.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <type_traits>
#include <variant>

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace {

using zib::Array;
using zib::Bytes;
using zib::Date;
using zib::Null;
using zib::Value;
using zib::ValueMap;

TEST(ValueTest, EachKindIsItself) {
  EXPECT_NE(Value().get<Null>(), nullptr);
  EXPECT_EQ(*Value(true).get<bool>(), true);
  EXPECT_EQ(*Value(1).get<std::int64_t>(), 1);
  EXPECT_EQ(*Value(1.5).get<double>(), 1.5);
  EXPECT_EQ(*Value("text").get<std::string>(), "text");
  EXPECT_EQ(*Value(Bytes{1, 2}).get<Bytes>(), (Bytes{1, 2}));
  EXPECT_EQ(*Value(Date{3}).get<Date>(), Date{3});
  EXPECT_EQ(Value(Array{1}).get<Array>()->size(), 1U);
  EXPECT_EQ(Value(ValueMap{{"a", 1}}).get<ValueMap>()->size(), 1U);
  EXPECT_EQ(Value("text").get<bool>(), nullptr);
}

TEST(ValueTest, KindsThatLookAlikeDiffer) {
  EXPECT_FALSE(Value(true) == Value(1));
  EXPECT_FALSE(Value(1) == Value(1.0));
  EXPECT_FALSE(Value(Null{}) == Value(""));
  EXPECT_FALSE(Value("1") == Value(1));
  EXPECT_FALSE(Value(Array{}) == Value(ValueMap{}));
}

TEST(ValueTest, UnsignedIntegersThatFitAreSigned) {
  constexpr auto largest = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(Value(std::uint64_t{5}), Value(5));
  EXPECT_EQ(Value(static_cast<std::uint64_t>(largest)), Value(largest));
  const auto beyond = static_cast<std::uint64_t>(largest) + 1;
  EXPECT_EQ(*Value(beyond).get<std::uint64_t>(), beyond);
}

template <class T>
void expectTaken() {
  constexpr T least = std::numeric_limits<T>::min();
  EXPECT_EQ(*Value(T{5}).template get<std::int64_t>(), 5);
  EXPECT_EQ(*Value(least).template get<std::int64_t>(), static_cast<std::int64_t>(least));
}

template <class... Integers>
void expectEachTaken() {
  (expectTaken<Integers>(), ...);
}

TEST(ValueTest, EveryIntegerTypeIsTaken) {
  expectEachTaken<signed char, short, int, long, long long, unsigned char, unsigned short,
                  unsigned int, unsigned long, unsigned long long, zib::objc::Integer,
                  zib::objc::UInteger>();
  EXPECT_EQ(*Value(ULONG_MAX).get<std::uint64_t>(), ULONG_MAX);
  EXPECT_EQ(*Value(ULLONG_MAX).get<std::uint64_t>(), ULLONG_MAX);
}

enum Unscoped { enumerator };

// In tests of what does not compile, too; these say it for all of a kind.
TEST(ValueTest, NothingElseBecomesABooleanOrAnInteger) {
  static_assert(std::is_convertible_v<bool, Value>);
  static_assert(!std::is_constructible_v<Value, void*>);
  static_assert(!std::is_constructible_v<Value, const int*>);
  static_assert(!std::is_constructible_v<Value, std::nullptr_t>);
  static_assert(!std::is_constructible_v<Value, zib::objc::id>);
  static_assert(!std::is_constructible_v<Value, zib::objc::Class>);
  static_assert(!std::is_constructible_v<Value, void (*)()>);
  static_assert(!std::is_constructible_v<Value, char>);
  static_assert(!std::is_constructible_v<Value, char32_t>);
  static_assert(!std::is_constructible_v<Value, Unscoped>);
  EXPECT_NE(Value(true).get<bool>(), nullptr);
}

TEST(ValueTest, TakesTheTextOfAPlatformString) {
  const zib::Object string = zib::makeString("é text");
  const zib::Object number = zib::objectFrom(Value(1));
  EXPECT_EQ(Value(zib::StringRef::of(string.raw())), Value("é text"));
  EXPECT_EQ(Value::text(string.raw()), Value("é text"));
  EXPECT_EQ(Value(zib::StringRef()), Value());
  EXPECT_EQ(Value::text(nullptr), Value());
  EXPECT_EQ(Value::text(number.raw()), Value());
}

// Copies of a constant share its text, and nobody can tell.
TEST(ValueTest, AConstantTextIsATextLikeAnother) {
  const Value constant = Value::constant<"constant">();
  const Value copy = constant;
  EXPECT_EQ(&std::get<std::string>(copy.storage()), &std::get<std::string>(constant.storage()));
  EXPECT_EQ(std::get<std::string>(constant.storage()), "constant");
  EXPECT_EQ(*constant.get<std::string>(), "constant");
  EXPECT_EQ(constant.storage().index(), Value("text").storage().index());
  EXPECT_EQ(constant, Value("constant"));
  EXPECT_EQ(Value("constant"), constant);
  EXPECT_FALSE(constant == Value("another"));
  EXPECT_FALSE(constant == Value());
  EXPECT_TRUE(constant.visit(
      [](const auto& held) { return std::is_same_v<std::decay_t<decltype(held)>, std::string>; }));
}

TEST(ValueTest, AMapKeepsItsOrderAndItsKeysDistinct) {
  ValueMap map{{"b", 1}, {"a", 2}, {"b", 3}};
  EXPECT_EQ(map.size(), 2U);
  EXPECT_EQ(map.begin()->key, "b");
  EXPECT_EQ(*map.find("b"), Value(3));
  map.set("c", 4);
  map.set("a", 5);
  EXPECT_EQ(map, (ValueMap{{"c", 4}, {"b", 3}, {"a", 5}}));
  EXPECT_EQ(map.find("d"), nullptr);
  EXPECT_FALSE(map == (ValueMap{{"c", 4}, {"b", 3}}));
  EXPECT_FALSE(map == (ValueMap{{"c", 4}, {"b", 3}, {"d", 5}}));
}

}  // namespace
