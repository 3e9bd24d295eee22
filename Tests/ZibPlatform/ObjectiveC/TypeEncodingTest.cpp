#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

#include <gtest/gtest.h>

#include "ZibPlatform/Foundation/Structures.h"
#include "ZibPlatform/ObjectiveC/Block.h"

namespace {

using zib::BlockLayout;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::IMP;
using zib::objc::Integer;
using zib::objc::SEL;
using zib::objc::UInteger;
using zib::objc::UniChar;

template <class Signature>
std::string_view method() {
  return zib::encoding::Method<Signature>::value.view();
}

template <class Signature>
std::string_view block() {
  return zib::encoding::Block<Signature>::value.view();
}

// As a platform compiler writes them for a 64-bit system whose BOOL is an unsigned char.
TEST(TypeEncodingTest, MethodsAreEncodedWithTheirFrame) {
  EXPECT_EQ(method<void(id, SEL)>(), "v16@0:8");
  EXPECT_EQ(method<id(id, SEL)>(), "@16@0:8");
  EXPECT_EQ(method<void(id, SEL, id, id)>(), "v32@0:8@16@24");
  EXPECT_EQ(method<BOOL(id, SEL, id, id, id)>(), "C40@0:8@16@24@32");
  EXPECT_EQ(method<void(id, SEL, id, id, BlockLayout*)>(), "v40@0:8@16@24@?32");
  EXPECT_EQ((method<zib::objc::Class(id, SEL)>()), "#16@0:8");
  EXPECT_EQ(method<IMP(id, SEL, SEL)>(), "^?24@0:8:16");
  EXPECT_EQ(method<const char*(id, SEL)>(), "r*16@0:8");
  EXPECT_EQ(method<UInteger(id, SEL)>(), "Q16@0:8");
  EXPECT_EQ(method<Integer(id, SEL)>(), "q16@0:8");
  EXPECT_EQ(method<long long(id, SEL)>(), "q16@0:8");
  EXPECT_EQ(method<unsigned long long(id, SEL)>(), "Q16@0:8");
}

TEST(TypeEncodingTest, NarrowIntegersTakeAnIntInTheFrame) {
  EXPECT_EQ(method<void(id, SEL, BOOL, id)>(), "v28@0:8C16@20");
  EXPECT_EQ(method<void(id, SEL, UniChar, signed char)>(), "v24@0:8S16c20");
  EXPECT_EQ(method<bool(id, SEL, bool)>(), "B20@0:8B16");
  EXPECT_EQ(method<int(id, SEL, unsigned int)>(), "i20@0:8I16");
}

TEST(TypeEncodingTest, FloatingPointAndStructures) {
  EXPECT_EQ(method<double(id, SEL, double)>(), "d24@0:8d16");
  EXPECT_EQ(method<float(id, SEL, float)>(), "f20@0:8f16");
  EXPECT_EQ((method<void(id, SEL, UniChar*, zib::Range)>()), "v40@0:8^S16{_NSRange=QQ}24");
  EXPECT_EQ((method<BOOL(id, SEL, zib::OperatingSystemVersion)>()), "C40@0:8{?=qqq}16");
}

TEST(TypeEncodingTest, Pointers) {
  EXPECT_EQ((method<id(id, SEL, const void*, UInteger)>()), "@32@0:8r^v16Q24");
  EXPECT_EQ(method<void(id, SEL, void*)>(), "v24@0:8^v16");
  EXPECT_EQ(method<id(id, SEL, id*)>(), "@24@0:8^@16");
  EXPECT_EQ(method<id(id, SEL, const UniChar*)>(), "@24@0:8r^S16");
}

struct Point {
  double x;
  double y;
};

}  // namespace

template <>
struct zib::encoding::Of<Point> : Text<"{Point=dd}"> {};

namespace {

TEST(TypeEncodingTest, ATypeStatesItsOwnAndItsPointersFollow) {
  EXPECT_EQ((method<void(id, SEL, Point)>()), "v32@0:8{Point=dd}16");
  EXPECT_EQ((method<void(id, SEL, Point*, const Point*)>()), "v32@0:8^{Point=dd}16r^{Point=dd}24");
}

TEST(TypeEncodingTest, BlocksTakeThemselvesFirst) {
  EXPECT_EQ(block<void()>(), "v8@?0");
  EXPECT_EQ(block<void(UInteger)>(), "v16@?0Q8");
  EXPECT_EQ((block<void(BOOL, id)>()), "v20@?0C8@12");
}

TEST(TypeEncodingTest, NormalisedKeepsOnlyWhatCompilersAgreeOn) {
  using zib::encoding::normalised;
  EXPECT_EQ(normalised("v32@0:8@16@24"), "v@:@@");
  EXPECT_EQ(normalised("@24@0:8@\"NSString\"16"), "@@:@");
  EXPECT_EQ(normalised("l16@0:8L16"), "q@:q");
  EXPECT_EQ(normalised("v40@0:8^S16{_NSRange=QQ}24"), normalised("v40@0:8^S16{_NSRange=LL}24"));
  EXPECT_EQ(normalised("{_NSRange=QQ}"), "{qq}");
  EXPECT_EQ(normalised("{?=qqq}"), "{qqq}");
  EXPECT_EQ(normalised("Vv24@0:8rn^{_NSZone}16"), "v@:^{}");
  EXPECT_EQ(normalised("@\"open"), "@");
  EXPECT_EQ(normalised("{open"), "{");
  EXPECT_EQ(normalised(""), "");
}

TEST(TypeEncodingTest, NormalisedForgetsTheSignOfAnInteger) {
  using zib::encoding::normalised;
  EXPECT_EQ(normalised("q16@0:8"), normalised("Q16@0:8"));
  EXPECT_EQ(normalised("v32@0:8i16s20c24"), normalised("v32@0:8I16S20C24"));
  EXPECT_NE(normalised("q16@0:8"), normalised("i16@0:8"));
  EXPECT_NE(normalised("q16@0:8"), normalised("d16@0:8"));
  EXPECT_NE(normalised("q16@0:8"), normalised("@16@0:8"));
  EXPECT_NE(normalised("B16@0:8"), normalised("c16@0:8"));
}

TEST(TypeEncodingTest, NormalisedTakesSwiftsStructuresWithoutAName) {
  using zib::encoding::normalised;
  EXPECT_EQ(normalised("v40@0:8^S16{qq}24"), normalised("v40@0:8^S16{_NSRange=QQ}24"));
  EXPECT_EQ(normalised("{CGRect={CGPoint=dd}{CGSize=dd}}"), normalised("{{dd}{dd}}"));
  EXPECT_EQ(normalised("^{__CFString}"), "^{}");
  EXPECT_NE(normalised("{qq}"), normalised("{qqq}"));
}

}  // namespace
