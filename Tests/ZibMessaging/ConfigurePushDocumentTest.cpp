// How a configure-push flow ends by what it fetches as the push configuration. Which bytes are one
// is in ConfigurePushDocumentGrammarTest.cpp.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tests/Support/DocumentFlowTest.h"
#include "Tests/Support/RowName.h"

namespace {

using namespace std::string_literals;
using test::answer;
using test::configuration;
using test::Story;

class ConfigurePushDocumentTest : public test::DocumentFlowTest {};

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
