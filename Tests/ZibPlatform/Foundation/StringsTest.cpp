#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Strings.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Structures.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using zib::makeString;
using zib::selector;
using zib::send;
using zib::utf8From;
using zib::objc::id;
using zib::objc::UInteger;

class StringsTest : public test::PlatformTest {
 protected:
  static std::string roundTrip(std::string_view text) { return utf8From(makeString(text).raw()); }
  // A part of a text, which can begin or end inside of a character.
  static id units(std::string_view text, UInteger from, UInteger count) {
    return send<id>(makeString(text).raw(), selector<"substringWithRange:">(),
                    zib::Range{from, count});
  }
  static UInteger length(const zib::Object& string) {
    return send<UInteger>(string.raw(), selector<"length">());
  }
};

constexpr std::string_view replacement = "\xEF\xBF\xBD";

TEST_F(StringsTest, TextOfEveryWidthComesBackAsItWent) {
  for (const std::string_view text :
       {""sv, "a"sv, "é"sv, "€"sv, "😀"sv, "aé€😀z"sv, "\x7F"sv, "\u0080"sv, "\u07FF"sv, "\u0800"sv,
        "\uD7FF"sv, "\uE000"sv, "\uFFFF"sv, "\U00010000"sv, "\U0010FFFF"sv, "e\u0301"sv}) {
    EXPECT_EQ(roundTrip(text), text);
  }
  EXPECT_EQ(length(makeString("😀")), 2U);
}

TEST_F(StringsTest, NulCharactersArePartOfTheText) {
  const std::string text = "a\0b\0"s;
  EXPECT_EQ(length(makeString(text)), 4U);
  EXPECT_EQ(roundTrip(text), text);
}

TEST_F(StringsTest, EachMaximalIllFormedPartIsReplacedOnce) {
  struct Case {
    std::string_view bytes;
    int replacements;
  };
  for (const Case& each :
       {Case{"\x80"sv, 1}, Case{"\xFF"sv, 1}, Case{"\xC0\x80"sv, 2}, Case{"\xC2"sv, 1},
        Case{"\xE2\x82"sv, 1}, Case{"\xF0\x9F\x98"sv, 1}, Case{"\xE0\x80\x80"sv, 3},
        Case{"\xED\xA0\x80"sv, 3}, Case{"\xF4\x90\x80\x80"sv, 4}, Case{"\xF5\x80"sv, 2}}) {
    std::string expected = "<";
    for (int index = 0; index < each.replacements; ++index) expected += replacement;
    expected += ">";
    EXPECT_EQ(roundTrip("<" + std::string(each.bytes) + ">"), expected);
  }
  EXPECT_EQ(roundTrip("\xE2\x82"), replacement);
}

TEST_F(StringsTest, LoneSurrogatesAreReplaced) {
  const std::string lone(replacement);
  ASSERT_EQ(send<UInteger>(units("😀", 0, 1), selector<"length">()), 1U);
  EXPECT_EQ(utf8From(units("a😀", 0, 2)), "a" + lone);
  EXPECT_EQ(utf8From(units("😀a", 1, 2)), lone + "a");
  EXPECT_EQ(utf8From(units("😀😀", 0, 3)), "😀" + lone);
  EXPECT_EQ(utf8From(units("😀😀", 1, 3)), lone + "😀");
  EXPECT_EQ(utf8From(units("😀😀", 1, 2)), lone + lone);
}

TEST_F(StringsTest, LengthsAroundTheStackBufferAndAMegabyte) {
  for (const std::size_t size : {255U, 256U, 257U, 1U << 20U}) {
    std::string text(size, 'x');
    EXPECT_EQ(roundTrip(text), text);
    text += "😀é";
    EXPECT_EQ(roundTrip(text), text);
  }
}

TEST_F(StringsTest, NilIsEmptyText) {
  EXPECT_EQ(utf8From(nullptr), "");
  EXPECT_FALSE(zib::StringRef::of(nullptr));
}

TEST_F(StringsTest, AMutableStringIsAStringAndANumberIsNone) {
  const id text = zib::sendToClass<"NSMutableString", "string">();
  EXPECT_EQ(zib::StringRef::of(text).native(), text);
  const id number = zib::sendToClass<"NSNumber", "numberWithInt:">(1);
  for (const id other : {number, zib::classNamed<"NSString">().object()}) {
    EXPECT_FALSE(zib::StringRef::of(other));
    EXPECT_EQ(zib::StringRef::of(other).utf8(), "");
  }
}

TEST_F(StringsTest, FirstCharactersNeverCutsInsideOne) {
  EXPECT_EQ(zib::firstCharacters("abc", 0), "");
  EXPECT_EQ(zib::firstCharacters("abc", 2), "ab");
  EXPECT_EQ(zib::firstCharacters("abc", 3), "abc");
  EXPECT_EQ(zib::firstCharacters("abc", 9), "abc");
  EXPECT_EQ(zib::firstCharacters("", 20), "");
  EXPECT_EQ(zib::firstCharacters("é€😀z", 1), "é");
  EXPECT_EQ(zib::firstCharacters("é€😀z", 2), "é€");
  EXPECT_EQ(zib::firstCharacters("é€😀z", 3), "é€😀");
  EXPECT_EQ(zib::firstCharacters("a\0b"sv, 2), "a\0"sv);
}

// A token is cut with it before it is logged, and tokens come from hosts: bytes that are no UTF-8
// must not be a way around the cut.
TEST_F(StringsTest, FirstCharactersCountsWhatIsNoCharacterToo) {
  EXPECT_EQ(zib::firstCharacters(std::string(100, '\x80'), 20), std::string(20, '\x80'));
  EXPECT_EQ(zib::firstCharacters("\xC3\xC3\xC3", 2), "\xC3\xC3");
  EXPECT_EQ(zib::firstCharacters("é\x80\x80z", 2), "é\x80");
}

TEST_F(StringsTest, AConstantHasOneObject) {
  const zib::ConstantString constant = zib::constantString<"é key">;
  EXPECT_EQ(constant.text, "é key");
  EXPECT_EQ(constant.object(), constant.object());
  EXPECT_EQ(utf8From(constant.object()), "é key");
}

}  // namespace
