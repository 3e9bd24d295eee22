// Which bytes are a push configuration to a flow, from the server's socket on: JSON in each
// encoding, damaged and whole, small and huge.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tests/Support/DocumentFlowTest.h"
#include "Tests/Support/Repeated.h"
#include "Tests/Support/RowName.h"

namespace {

using namespace std::string_literals;
using test::Bodies;
using test::configuration;
using test::hundredThousand;
using test::repeated;
using test::tenMegabytes;
using test::truncationsOf;

std::string nested(std::string_view open, std::string_view close, std::size_t levels) {
  return repeated(open, levels) + "0" + repeated(close, levels);
}

// ASCII text in wider units.
std::string widened(std::string_view ascii, std::size_t unitSize, bool isBigEndian) {
  std::string result;
  for (const char character : ascii) {
    std::string unit(unitSize, '\0');
    (isBigEndian ? unit.back() : unit.front()) = character;
    result += unit;
  }
  return result;
}

class ConfigurePushDocumentGrammarTest : public test::DocumentFlowTest {};

// Each is an error of the reader's, and the end of the flow.
class UnreadableDocumentTest : public ConfigurePushDocumentGrammarTest,
                               public testing::WithParamInterface<Bodies> {};

TEST_P(UnreadableDocumentTest, EndsTheFlowWithTheReadersError) {
  for (const std::string& text : GetParam().bodies) expectUnreadable(text);
}

INSTANTIATE_TEST_SUITE_P(
    Grammar, UnreadableDocumentTest,
    testing::Values(
        Bodies{"WhiteSpaceAlone", {" ", "\n", " \t\r\n "}},
        Bodies{"ByteOrderMarkAlone",
               {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF", "\xFF\xFE\0\0"s, "\0\0\xFE\xFF"s}},
        Bodies{"SingleQuotes", {"{'ios_config_toggle': true}", "['a']"}},
        Bodies{"UnquotedKeys", {"{ios_config_toggle: true}", "{1: true}", "{true: true}"}},
        Bodies{"TrailingCommas", {"{\"a\": 1,}", "[1,]", "[,]", "{,}", "{},"}},
        Bodies{"MissingMarks", {"[1 2]", "{\"a\" 1}", "{\"a\": 1 \"b\": 2}", "{\"a\"}"}},
        Bodies{"WrongBrackets", {"[1}", "{\"a\": 1]", "]", "}", "(1)"}},
        Bodies{"NoNumbers", {"[NaN]", "[nan]", "[Infinity]", "[-Infinity]", "[-]", "[1e]"}},
        Bodies{"LeadingZeros", {"[01]", "[-01]", "[00]"}},
        Bodies{"PlusSigns", {"[+1]", "{\"ios_config_toggle\": +1}"}},
        Bodies{"HexadecimalNumbers", {"[0x1]", "[0XF]", "[1F]"}},
        Bodies{"BareFractions", {"[.5]", "[1.]", "[1.e3]"}},
        Bodies{"WordsInOtherCase", {"[True]", "[FALSE]", "[NULL]", "[None]", "[undefined]"}},
        Bodies{"Comments", {"// c\n{}", "/* c */ {}", "{} // c", "# c\n{}", "{/**/}"}},
        Bodies{"Truncations", truncationsOf(configuration(), 1)},
        Bodies{"TwoRoots", {"{}{}", "{} {}", "[]\n[]", "{}x", "{}\0"s}},
        Bodies{"Fragments", {"\"text\"", "1", "-1.5", "true", "false", "null", " true "}},
        Bodies{
            "OtherDocuments",
            {"<!DOCTYPE html>\n<html><body>Please sign in</body></html>", test::propertyList(),
             "{ ios_config_toggle = YES; }", "ios_config_toggle=true", "ios_config_toggle: true\n",
             "\x1F\x8B\x08\0\0\0\0\0"s, ")]}',\n{}", "callback({})"}}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    Text, UnreadableDocumentTest,
    testing::Values(Bodies{"ControlCharacters",
                           {"[\"\x01\"]", "[\"\n\"]", "[\"\t\"]", "[\"\x1F\"]"}},
                    Bodies{"NULs", {"[\"a\0b\"]"s, "[1\0]"s, "\0[]"s, std::string(100, '\0')}},
                    Bodies{"BadEscapes",
                           {R"(["\x"])", R"(["\'"])", R"(["\u12"])", R"(["\uzzzz"])",
                            R"(["\U0041"])", R"(["\)"}},
                    Bodies{"LoneSurrogateEscapes",
                           {R"(["\ud800"])", R"(["\udc00"])", R"(["\ud800\u0041"])",
                            R"(["\udc00\ud800"])", R"({"\ud800": 1})"}},
                    Bodies{"InvalidUTF8",
                           {"[\"\xFF\"]", "[\"\x80\"]", "[\"\xC3\"]", "[\"\xC0\x80\"]",
                            "[\"\xE2\x82\"]", "[\"\xED\xA0\x80\"]", "[\"\xF4\x90\x80\x80\"]",
                            "[\"\xF8\x88\x80\x80\x80\"]", "{\"\xFF\": 1}"}},
                    Bodies{"InvalidUTF16",
                           {"\xFF\xFE["s, "\xFF\xFE[\0\"\0\0\xD8\"\0]\0"s, "[\0]\0]"s,
                            "\xFE\xFF\0[\0\"\xDC\0\0\"\0]"s}},
                    Bodies{"InvalidUTF32", {"[\0\0\0]\0\0"s, "[\0\0\0\0\0\x11\0]\0\0\0"s}},
                    Bodies{"OtherEncodings", {"[\"\xE4\"]", "[\"\x93\x94\"]", "+AFsAXQ-"}}),
    test::rowName);

// Each switches push on and names the property list, however it is written.
class ReadableDocumentTest : public ConfigurePushDocumentGrammarTest,
                             public testing::WithParamInterface<Bodies> {};

TEST_P(ReadableDocumentTest, LeadsToTheRegistration) {
  for (const std::string& text : GetParam().bodies) expectReadable(text);
}

// A member in front of the two that count.
std::string withMember(const std::string& member) {
  return "{" + member + ", " + configuration().substr(1);
}

INSTANTIATE_TEST_SUITE_P(
    All, ReadableDocumentTest,
    testing::Values(
        Bodies{"UTF8WithAMark", {"\xEF\xBB\xBF" + configuration()}},
        Bodies{"UTF16",
               {widened(configuration(), 2, false), widened(configuration(), 2, true),
                "\xFF\xFE" + widened(configuration(), 2, false),
                "\xFE\xFF" + widened(configuration(), 2, true)}},
        Bodies{"UTF32",
               {widened(configuration(), 4, false), widened(configuration(), 4, true),
                "\xFF\xFE\0\0"s + widened(configuration(), 4, false),
                "\0\0\xFE\xFF"s + widened(configuration(), 4, true)}},
        Bodies{"WhiteSpaceAround", {" \r\n\t" + configuration() + "\n\n"}},
        Bodies{"EscapesInKeysAndURL",
               {R"({"ios_config_\u0074oggle": true,)"
                R"( "ios_private_key_url": "https:\/\/files.example\/Service-Info.plis\u0074"})"}},
        Bodies{"OtherMembers",
               {withMember("\"IOS_CONFIG_TOGGLE\": false"), withMember("\"\": null"),
                withMember("\"in\": {\"ios_config_toggle\": false}"),
                withMember("\"ä😀\": \"\\ud83d\\ude00\"")}},
        Bodies{"DuplicateMembersOfWhichTheLastCounts",
               {withMember("\"ios_config_toggle\": false"),
                withMember("\"ios_private_key_url\": \"https://other.example/\""),
                withMember("\"ios_config_toggle\": {}, \"ios_config_toggle\": \"no\"")}}),
    test::rowName);

TEST_F(ConfigurePushDocumentGrammarTest, NestingHasALimit) {
  expectReadable(withMember("\"a\": " + nested("[", "]", 511)));
  expectUnreadable(withMember("\"a\": " + nested("[", "]", 512)));
  expectUnreadable(nested("[", "]", hundredThousand));
  expectUnreadable(nested("{\"a\":", "}", hundredThousand));
  expectUnreadable(nested("[{\"a\":", "}]", hundredThousand));
  expectUnreadable(repeated("[", hundredThousand));
  expectUnreadable(repeated("{\"a\":", hundredThousand));
}

TEST_F(ConfigurePushDocumentGrammarTest, TenMegabytesAreRead) {
  expectReadable(withMember("\"a\": \"" + std::string(tenMegabytes, 'x') + "\""));
  expectUnreadable("{\"a\": \"" + std::string(tenMegabytes / 4, 'x'));
  expectUnreadable(std::string(tenMegabytes / 4, ' '));
  EXPECT_LT(test::peakMegabytes(), 1000);
}

// So that a few bytes for each do not become gigabytes of objects.
TEST_F(ConfigurePushDocumentGrammarTest, TheNumberOfValuesHasALimit) {
  expectReadable(withMember("\"a\": [0" + repeated(",0", 100'000) + "]"));
  expectUnreadable(withMember("\"a\": [0" + repeated(",0", tenMegabytes / 2) + "]"));
  EXPECT_LT(test::peakMegabytes(), 1000);
}

TEST_F(ConfigurePushDocumentGrammarTest, NumbersBeyondADoubleAreUnreadable) {
  for (const std::string& number :
       {"1e400"s, "-1e400"s, "1e99999999999999999999"s, std::string(1'000'000, '9')}) {
    expectUnreadable(configuration(number));
    expectUnreadable(withMember("\"a\": " + number));
  }
}

}  // namespace
