// NSJSONSerialization where GNUstep's own differs from the phone's.

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "Tests/Simulator/Foundation/ReadersAndWriters.h"
#include "Tests/Support/PlatformTest.h"

namespace {

using namespace serialization;
using namespace std::string_literals;
using zib::Array;
using zib::Null;
using zib::selector;
using zib::send;
using zib::Value;
using zib::ValueMap;
using zib::objc::id;
using zib::objc::UInteger;

constexpr UInteger allowsFragments = 4;

// The only element of the array that the text is.
Value element(std::string_view text) {
  std::string list = "[";
  list.append(text).append("]");
  const Read outcome = readJSON(list);
  const auto* array = outcome.value ? outcome.value->get<Array>() : nullptr;
  if (array == nullptr || array->size() != 1) {
    ADD_FAILURE() << text << ": " << outcome.error.description;
    return {};
  }
  return array->front();
}

class JSONTest : public test::FoundationTest {};

void expectErrors(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    SCOPED_TRACE(text);
    serialization::expectReadersError(readJSON(text), "The data is not JSON: ");
  }
}

TEST_F(JSONTest, WhatBreaksTheGrammarIsAnError) {
  expectErrors({"",         " ",        "{",        "[",          "[1,]",   "{\"a\":1,}",  "[1 2]",
                "[1]x",     "[1][2]",   "[01]",     "[+1]",       "[.5]",   "[1.]",        "[1e]",
                "[-]",      "[0x1]",    "[NaN]",    "[Infinity]", "[True]", "['a']",       "{a:1}",
                "{\"a\"}",  "{\"a\":}", "{1:2}",    "[\"\\x\"]",  "[\"\\",  "[\"\\u12\"]", "[\"a",
                "[\"\n\"]", "[\"\t\"]", "// c\n[]", "[1e400]"});
}

TEST_F(JSONTest, FragmentsAreErrors) { expectErrors({"1", "\"a\"", "true", "null", " 1.5 "}); }

TEST_F(JSONTest, WhatIsNoUnicodeIsAnError) {
  expectErrors({"[\"\\uD800\"]", "[\"\\uDC00\"]", "[\"\\uD800\\u0041\"]", "[\"\xFF\"]",
                "[\"\xC0\x80\"]", "[\"\xED\xA0\x80\"]", "[\"\xF4\x90\x80\x80\"]", "[\"a\0\"]"s,
                "[]\0"s, "\xFF\xFE[\0]"s, "\xFE\xFF\0[\xD8\0\0]"s});
}

TEST_F(JSONTest, FragmentsAreReadOnRequest) {
  EXPECT_EQ(readJSON("\"a\"", allowsFragments).value, Value("a"));
  EXPECT_EQ(readJSON("1", allowsFragments).value, Value(1));
  EXPECT_FALSE(readJSON("x", allowsFragments).value);
}

TEST_F(JSONTest, NilDataIsAnError) {
  id error = nullptr;
  EXPECT_EQ(
      send<id>(zib::classNamed<"NSJSONSerialization">().object(),
               selector<"JSONObjectWithData:options:error:">(), id{nullptr}, UInteger{0}, &error),
      nullptr);
  EXPECT_EQ(zib::Error::fromNative(error).code, 3840);
}

TEST_F(JSONTest, ErrorsNeedNotBeAskedFor) {
  const zib::Object data = zib::makeData({});
  EXPECT_EQ(send<id>(zib::classNamed<"NSJSONSerialization">().object(),
                     selector<"JSONObjectWithData:options:error:">(), data.raw(), UInteger{0},
                     static_cast<id*>(nullptr)),
            nullptr);
}

TEST_F(JSONTest, ValuesOfEveryKind) {
  const Read outcome =
      readJSON(R"( {"text": "a", "yes": true, "no": false, "none": null, "list": [1, [], {}]} )");
  EXPECT_EQ(outcome.value, Value(ValueMap{{"text", "a"},
                                          {"yes", true},
                                          {"no", false},
                                          {"none", Null()},
                                          {"list", Array{1, Array(), ValueMap()}}}));
}

TEST_F(JSONTest, IntegersStayIntegers) {
  EXPECT_EQ(element("0"), Value(0));
  EXPECT_EQ(element("9007199254740993"), Value(std::int64_t{9007199254740993}));
  EXPECT_EQ(element("-9223372036854775808"), Value(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(element("18446744073709551615"), Value(std::numeric_limits<std::uint64_t>::max()));
}

TEST_F(JSONTest, OtherNumbersAreDoubles) {
  EXPECT_EQ(element("1.0"), Value(1.0));
  EXPECT_EQ(element("1e0"), Value(1.0));
  EXPECT_EQ(element("-0.0"), Value(-0.0));
  EXPECT_EQ(element("0.1"), Value(0.1));
  EXPECT_EQ(element("18446744073709551616"), Value(18446744073709551616.0));
  EXPECT_EQ(element("1e-400"), Value(0.0));
}

TEST_F(JSONTest, BooleansAndNumbersCanBeToldApart) {
  EXPECT_EQ(element("true"), Value(true));
  EXPECT_EQ(element("1"), Value(1));
  EXPECT_EQ(element("false"), Value(false));
  EXPECT_EQ(element("0"), Value(0));
}

TEST_F(JSONTest, StringsKeepEveryCharacter) {
  EXPECT_EQ(element(R"("\"\\\/\b\f\n\r\t")"), Value("\"\\/\b\f\n\r\t"));
  EXPECT_EQ(element(R"("\u00e4\uD83D\uDE00")"), Value("ä😀"));
  EXPECT_EQ(element("\"ä😀\x7F\""), Value("ä😀\x7F"));
  EXPECT_EQ(element(R"("a\u0000b")"), Value("a\0b"s));
}

TEST_F(JSONTest, OfEqualKeysTheLastWins) {
  EXPECT_EQ(readJSON(R"({"a": 1, "b": 2, "a": 3})").value, Value(ValueMap{{"a", 3}, {"b", 2}}));
}

TEST_F(JSONTest, EveryUnicodeFormIsRead) {
  const Value expected(Array{"ä😀"});
  EXPECT_EQ(readJSON("\xEF\xBB\xBF[\"ä😀\"]").value, expected);
  const std::u16string wide = u"[\"ä😀\"]";
  const std::string little(reinterpret_cast<const char*>(wide.data()), wide.size() * 2);
  std::string big = little;
  for (std::size_t at = 0; at < big.size(); at += 2) std::swap(big[at], big[at + 1]);
  EXPECT_EQ(readJSON(little).value, expected);
  EXPECT_EQ(readJSON("\xFF\xFE" + little).value, expected);
  EXPECT_EQ(readJSON(big).value, expected);
  EXPECT_EQ(readJSON("\xFE\xFF" + big).value, expected);
  const std::u32string widest = U"[\"ä😀\"]";
  const std::string utf32(reinterpret_cast<const char*>(widest.data()), widest.size() * 4);
  EXPECT_EQ(readJSON(utf32).value, expected);
  EXPECT_EQ(readJSON("\xFF\xFE\0\0"s + utf32).value, expected);
}

TEST_F(JSONTest, NestingHasALimit) {
  const auto nested = [](std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
  };
  EXPECT_TRUE(readJSON(nested(512)).value);
  EXPECT_FALSE(readJSON(nested(513)).value);
  EXPECT_FALSE(readJSON(std::string(5'000'000, '[')).value);
}

TEST_F(JSONTest, TheNumberOfValuesHasALimit) {
  std::string text = "[0";
  for (int count = 0; count < 250'000; ++count) text += ",0";
  EXPECT_FALSE(readJSON(text + "]").value);
}

TEST_F(JSONTest, TheReasonSaysWhere) {
  EXPECT_NE(readJSON("{\n\"a\": x}").error.description.find("line 2, column 6"), std::string::npos);
}

}  // namespace
