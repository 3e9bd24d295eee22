// What a string must be to be a URL, and what a URL gives.

#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/URL.h"

#include <gtest/gtest.h>

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"

namespace {

using namespace std::string_view_literals;
using zib::URL;

class PlatformURLTest : public test::FoundationTest {};

TEST_F(PlatformURLTest, WhatIsNoURLIsRefusedAndNotRepaired) {
  for (const std::string_view text :
       {""sv, " "sv, "https://example.com/a b"sv, "https://example.com/é"sv,
        "https://example.com/%zz"sv, "https://example.com/%4"sv, "https://example.com/\""sv,
        "https://example.com/<>"sv, "https://example.com/a\nb"sv, "https://example.com/a\0b"sv,
        "https://example.com:port/"sv, "a#b#c"sv, "https://example.com/\xFF"sv}) {
    EXPECT_FALSE(URL::parse(text)) << text;
  }
}

TEST_F(PlatformURLTest, AURLKeepsItsText) {
  for (const std::string_view text :
       {"https://example.com"sv, "HTTPS://Example.com/A?b=c#d"sv, "app://open?id=1"sv,
        "app:opaque"sv, "path/only"sv, "https://example.com/%C3%A9"sv, "https://[::1]:8080/"sv}) {
    const auto url = URL::parse(text);
    ASSERT_TRUE(url) << text;
    EXPECT_EQ(url->text().utf8(), text);
  }
}

TEST_F(PlatformURLTest, OnlyAURLIsRetainedAsOne) {
  EXPECT_FALSE(URL::retained(nullptr));
  EXPECT_FALSE(URL::retained(zib::makeString("https://example.com").raw()));
  EXPECT_FALSE(URL::retained(zib::classNamed<"NSURL">().object()));
  const auto url = URL::parse("https://example.com/");
  EXPECT_EQ(URL::retained(url->native())->text().utf8(), "https://example.com/");
}

TEST_F(PlatformURLTest, QueryItemsAreDecodedInOrder) {
  const auto items = URL::parse("https://example.com/?a=1&b=x%20y&c&d=&a=2+3")->queryItems();
  ASSERT_EQ(items.size(), 5U);
  EXPECT_EQ(items[0].name.utf8(), "a");
  EXPECT_EQ(items[0].value.utf8(), "1");
  EXPECT_EQ(items[1].value.utf8(), "x y");
  EXPECT_EQ(items[2].name.utf8(), "c");
  EXPECT_FALSE(items[2].value);
  EXPECT_TRUE(items[3].value);
  EXPECT_EQ(items[3].value.utf8(), "");
  EXPECT_EQ(items[4].value.utf8(), "2+3");
  EXPECT_TRUE(URL::parse("https://example.com/")->queryItems().empty());
}

}  // namespace
