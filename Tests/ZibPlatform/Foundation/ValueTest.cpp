#include "ZibPlatform/Foundation/Value.h"

#include <gtest/gtest.h>

#include <limits>

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
