// What a server may send as the push configuration, from its socket to the end of the flow.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tests/Support/PushFlowTest.h"
#include "Tests/Support/Repeated.h"
#include "Tests/Support/RowName.h"

namespace {

using namespace std::string_literals;
using test::answer;
using test::Bodies;
using test::configuration;
using test::hundredThousand;
using test::repeated;
using test::Request;
using test::Story;
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

class ConfigurePushDocumentTest : public test::PushFlowTest {
 protected:
  Story storyOf(std::string document, int status = 200) {
    return PushFlowTest::storyOf(Request::configuration, std::move(document), status);
  }
  void expectUnreadable(const std::string& document) {
    SCOPED_TRACE(test::startOf(document));
    EXPECT_EQ(storyOf(document), test::story::notFetched(test::story::readersError));
    EXPECT_TRUE(flow_.lastError().starts_with("The data is not JSON: ")) << flow_.lastError();
    expectNothingHandedOver();
  }
  void expectReadable(const std::string& document) {
    SCOPED_TRACE(test::startOf(document));
    EXPECT_EQ(storyOf(document), test::story::registered());
    expectPropertyListHandedOver();
  }
};

// Each is an error of the reader's, and the end of the flow.
class UnreadableDocumentTest : public ConfigurePushDocumentTest,
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
class ReadableDocumentTest : public ConfigurePushDocumentTest,
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

TEST_F(ConfigurePushDocumentTest, NestingHasALimit) {
  expectReadable(withMember("\"a\": " + nested("[", "]", 511)));
  expectUnreadable(withMember("\"a\": " + nested("[", "]", 512)));
  expectUnreadable(nested("[", "]", hundredThousand));
  expectUnreadable(nested("{\"a\":", "}", hundredThousand));
  expectUnreadable(nested("[{\"a\":", "}]", hundredThousand));
  expectUnreadable(repeated("[", hundredThousand));
  expectUnreadable(repeated("{\"a\":", hundredThousand));
}

TEST_F(ConfigurePushDocumentTest, TenMegabytesAreRead) {
  expectReadable(withMember("\"a\": \"" + std::string(tenMegabytes, 'x') + "\""));
  expectUnreadable("{\"a\": \"" + std::string(tenMegabytes / 4, 'x'));
  expectUnreadable(std::string(tenMegabytes / 4, ' '));
  EXPECT_LT(test::peakMegabytes(), 1000);
}

// So that a few bytes for each do not become gigabytes of objects.
TEST_F(ConfigurePushDocumentTest, TheNumberOfValuesHasALimit) {
  expectReadable(withMember("\"a\": [0" + repeated(",0", 100'000) + "]"));
  expectUnreadable(withMember("\"a\": [0" + repeated(",0", tenMegabytes / 2) + "]"));
  EXPECT_LT(test::peakMegabytes(), 1000);
}

TEST_F(ConfigurePushDocumentTest, NumbersBeyondADoubleAreUnreadable) {
  for (const std::string& number :
       {"1e400"s, "-1e400"s, "1e99999999999999999999"s, std::string(1'000'000, '9')}) {
    expectUnreadable(configuration(number));
    expectUnreadable(withMember("\"a\": " + number));
  }
}

TEST_F(ConfigurePushDocumentTest, TheLastOfTwoTogglesSwitchesOffToo) {
  const std::string on = configuration();
  EXPECT_EQ(storyOf(on.substr(0, on.size() - 1) + ", \"ios_config_toggle\": false}"),
            test::story::switchedOff());
  expectNothingHandedOver();
}

TEST_F(ConfigurePushDocumentTest, ARootThatIsNoObjectIsNoConfiguration) {
  for (const std::string& text :
       {"[]"s, "[true]"s, "[" + configuration() + "]", "[[[[\"ios_config_toggle\", true]]]]"s}) {
    EXPECT_EQ(storyOf(text), test::story::disabled()) << text;
    expectNothingHandedOver();
  }
}

TEST_F(ConfigurePushDocumentTest, WithoutTheTwoMembersPushIsOff) {
  for (const char* text :
       {"{}", R"({"ios_private_key_url": "https://files.example/Service-Info.plist"})",
        R"({"Ios_config_toggle": true})", R"({"ios_config_toggle ": true})",
        R"({"ios_config": {"ios_config_toggle": true}})"}) {
    EXPECT_EQ(storyOf(text), test::story::switchedOff()) << text;
    expectNothingHandedOver();
  }
}

struct Member {
  const char* name;
  // As JSON.
  std::vector<std::string> values;
};

class ToggleTest : public ConfigurePushDocumentTest, public testing::WithParamInterface<Member> {
 protected:
  void expectStories(const Story& story) {
    for (const std::string& value : GetParam().values) {
      SCOPED_TRACE(value);
      EXPECT_EQ(storyOf(configuration(value)), story);
    }
  }
};

class TrueToggleTest : public ToggleTest {};
class FalseToggleTest : public ToggleTest {};

TEST_P(TrueToggleTest, LeadsToTheRegistration) {
  expectStories(test::story::registered());
  expectPropertyListHandedOver();
}

INSTANTIATE_TEST_SUITE_P(All, TrueToggleTest,
                         testing::Values(Member{"True", {"true"}}, Member{"One", {"1"}},
                                         Member{"OneWithAFraction", {"1.0", "1.000"}},
                                         Member{"OneWithAnExponent",
                                                {"1e0", "1E+0", "10e-1", "0.1e1", "100.0e-2"}}),
                         test::rowName);

TEST_P(FalseToggleTest, EndsTheFlow) {
  expectStories(test::story::switchedOff());
  expectNothingHandedOver();
}

INSTANTIATE_TEST_SUITE_P(
    All, FalseToggleTest,
    testing::Values(
        Member{"False", {"false"}}, Member{"Zero", {"0", "-0", "0.0", "-0.0", "0e5", "1e-400"}},
        Member{"OtherIntegers", {"2", "-1", "10", "255", "256", "257", "4294967297"}},
        Member{"HugeIntegers",
               {"9223372036854775807", "-9223372036854775808", "18446744073709551615",
                "18446744073709551616", "18446744073709551617", "1" + std::string(300, '0')}},
        Member{"Fractions", {"1.5", "0.5", "0.9999999999999999", "1.0000000000000002", "-1.0"}},
        Member{"Texts", {"\"true\"", "\"1\"", "\"YES\"", "\"\""}}, Member{"Null", {"null"}},
        Member{"Arrays", {"[]", "[true]", "[1]"}}, Member{"Objects", {"{}", "{\"a\": true}"}}),
    test::rowName);

class NoURLTest : public ConfigurePushDocumentTest, public testing::WithParamInterface<Member> {};

TEST_P(NoURLTest, EndsTheFlow) {
  for (const std::string& value : GetParam().values) {
    SCOPED_TRACE(value);
    EXPECT_EQ(storyOf(configuration("true", value)), test::story::withoutURL());
    expectNothingHandedOver();
    EXPECT_EQ(storyOf(configuration("false", value)), test::story::switchedOff());
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, NoURLTest,
    testing::Values(
        Member{"Null", {"null"}}, Member{"Booleans", {"true", "false"}},
        Member{"Numbers", {"0", "1", "1.5"}},
        Member{"Arrays", {"[]", "[\"https://files.example/Service-Info.plist\"]"}},
        Member{"Objects", {"{}", "{\"url\": \"https://files.example/Service-Info.plist\"}"}},
        Member{"EmptyText", {"\"\""}},
        Member{"Blanks",
               {"\" \"", "\"not a url\"", "\" https://files.example/Service-Info.plist\"",
                "\"https://files.example/Service-Info.plist \"",
                "\"https://files.example/Service Info.plist\"", "\"https://files example/\"",
                R"("https://files.example/\n")", R"("https://files.example/\t")"}},
        Member{"CharactersThatNoURLHolds",
               {R"("https://files.example/\u0000")", R"("https://files.example/<a>")",
                R"("https://files.example/\"")", R"("https://files.example/ä")",
                R"("https://files.example/{a}")", R"("https://files.example/a\\b")"}}),
    test::rowName);

// A text that forms a URL is one, also where nothing can be downloaded from it.
TEST_F(ConfigurePushDocumentTest, AURLThatLeadsNowhereFailsInTheDownload) {
  for (const std::string url : {"Service-Info.plist", "/Service-Info.plist", "plist:here",
                                "mailto:a@files.example", "https:", "https:///path"}) {
    SCOPED_TRACE(url);
    EXPECT_EQ(storyOf(configuration("true", "\"" + url + "\"")),
              test::story::notDownloaded("NSURLErrorDomain -1002", 0, url));
    expectNothingHandedOver();
  }
}

TEST_F(ConfigurePushDocumentTest, TheURLIsAskedForAsItIsWritten) {
  flow_.serve(test::propertyListHost, "/a/../b%20c?d=%C3%A4&e", answer(test::propertyList()));
  const std::string url = "HTTPS://Files.Example:443/a/../b%20c?d=%C3%A4&e";
  EXPECT_EQ(storyOf(configuration("true", "\"" + url + "\"")),
            test::story::registered(test::story::savedLine, url));
  expectPropertyListHandedOver();
}

}  // namespace
