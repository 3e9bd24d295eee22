// NSISO8601DateFormatter, whose default form GNUstep gets wrong.

#include <gtest/gtest.h>

#include <limits>

#include "Simulator/Foundation/GregorianTime.h"
#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::classNamed;
using zib::selector;
using zib::send;
using zib::objc::id;

class DateFormatterTest : public test::FoundationTest {};

id formatted(id date) {
  const zib::Object formatter = zib::Object::adopted(
      send<id>(classNamed<"NSISO8601DateFormatter">().object(), selector<"new">()));
  return send<id>(formatter.raw(), selector<"stringFromDate:">(), date);
}

std::string text(double secondsSince1970) {
  return zib::utf8From(
      formatted(send<id>(classNamed<"NSDate">().object(),
                         selector<"dateWithTimeIntervalSince1970:">(), secondsSince1970)));
}

TEST_F(DateFormatterTest, TheDefaultFormIsUTCToTheSecond) {
  EXPECT_EQ(text(1794787800), "2026-11-16T00:10:00Z");
  EXPECT_EQ(text(0), "1970-01-01T00:00:00Z");
  EXPECT_EQ(text(951782399), "2000-02-28T23:59:59Z");
  EXPECT_EQ(text(951782400), "2000-02-29T00:00:00Z");
}

TEST_F(DateFormatterTest, FractionsAreCutOffTowardsThePast) {
  EXPECT_EQ(text(59.999), "1970-01-01T00:00:59Z");
  EXPECT_EQ(text(-0.5), "1969-12-31T23:59:59Z");
}

TEST_F(DateFormatterTest, DatesBefore1970AndFarOnes) {
  EXPECT_EQ(text(-1), "1969-12-31T23:59:59Z");
  EXPECT_EQ(text(-2208988800), "1900-01-01T00:00:00Z");
  EXPECT_EQ(text(-62135596800), "0001-01-01T00:00:00Z");
  EXPECT_EQ(text(64092211200), "4001-01-01T00:00:00Z");
  EXPECT_EQ(text(253402300799), "9999-12-31T23:59:59Z");
  EXPECT_EQ(text(253402300800), "10000-01-01T00:00:00Z");
}

TEST_F(DateFormatterTest, WhatNoCalendarShowsHasNoText) {
  EXPECT_EQ(formatted(nullptr), nullptr);
  EXPECT_EQ(text(1e18), "");
  EXPECT_EQ(text(-1e18), "");
  EXPECT_EQ(text(std::numeric_limits<double>::infinity()), "");
  EXPECT_FALSE(sim::internetDateTime(std::numeric_limits<double>::quiet_NaN()));
}

TEST_F(DateFormatterTest, AFormatterFollowsTheClock) {
  sim::foundation::setClock([] { return 1794787800.75; });
  EXPECT_EQ(zib::utf8From(formatted(send<id>(classNamed<"NSDate">().object(), selector<"date">()))),
            "2026-11-16T00:10:00Z");
}

}  // namespace
