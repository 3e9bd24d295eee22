// What zibsim inspect says of a payload.

#include "Simulator/Inspect/Inspection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "Simulator/Inspect/InspectionText.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "Tests/Support/PlatformTest.h"

namespace {

using sim::Inspection;
using sim::Json;

class InspectionTest : public test::FoundationTest {
 protected:
  static Inspection of(const Json& payload, std::string_view eventType = "notification-clicked") {
    return sim::inspect(payload.dump(), eventType);
  }

  // A payload that raises no remark, with more members.
  static Json with(const Json& members = Json::object()) {
    Json payload = {{"aps", {{"alert", "Hello"}}}};
    payload.update(members);
    return payload;
  }

  static std::string remarkOn(const Json& payload, const std::string& key) {
    const Inspection inspection = of(payload);
    const auto found = std::find_if(inspection.remarks.begin(), inspection.remarks.end(),
                                    [&](const sim::Remark& remark) { return remark.key == key; });
    return found == inspection.remarks.end() ? "" : found->message;
  }

  static std::vector<std::string> verdictsOn(const Json& payload) {
    std::vector<std::string> verdicts;
    for (const sim::ConsideredKey& key : of(payload).link.considered) {
      verdicts.push_back(key.verdict);
    }
    return verdicts;
  }

  static std::string noteOn(const Json& payload, const std::string& field) {
    return sim::jsonFrom(of(payload)).at("notes").at(field);
  }
};

TEST_F(InspectionTest, ReportsTheFourteenFields) {
  const Json payload = with({{"pn_campaign_id", "spring"}, {"_id", "u"}, {"club", ""}});
  const Json json = sim::jsonFrom(of(payload, "notification-delivered"));
  EXPECT_EQ(json.at("eventType"), "notification-delivered");
  EXPECT_EQ(json.at("test"), false);
  EXPECT_EQ(json.at("event"), Json::parse(R"({"pn_campaign_id": "spring", "ma_campaign_id": null,
      "node_id": null, "ma_channel": "push", "user_id": null,
      "event_type": "notification-delivered", "club": "", "environment": null,
      "customer_key": null, "reasons": null, "campaign_source": "PUSH-NOTIFICATION",
      "platform_name": "ios", "click_url": null, "domain_userid": "u"})"));
}

TEST_F(InspectionTest, SaysWhyAFieldIsNull) {
  EXPECT_EQ(noteOn(with(), "node_id"), "there is no key \"node_id\"");
  EXPECT_EQ(noteOn(with({{"node_id", 5}}), "node_id"), "a number, not text");
  EXPECT_EQ(noteOn(with({{"node_id", nullptr}}), "node_id"), "null, not text");
  EXPECT_EQ(noteOn(with({{"node_id", true}}), "node_id"), "true or false, not text");
  EXPECT_EQ(noteOn(with({{"node_id", Json::array()}}), "node_id"), "a list, not text");
  EXPECT_EQ(noteOn(with({{"node_id", Json::object()}}), "node_id"), "an object, not text");
  EXPECT_EQ(
      noteOn(with({{"Node-ID", "5"}}), "node_id"),
      "there is no key \"node_id\"; \"Node-ID\" is another one, since keys are matched letter "
      "by letter");
  EXPECT_EQ(noteOn(with(), "user_id"), "always null: nothing in a notification fills it");
}

TEST_F(InspectionTest, TellsTheKeyThatDecides) {
  const Json payload = with({{"url", 5},
                             {"link", "NA"},
                             {"click_action", ""},
                             {"deeplink", "https://a.example/"},
                             {"web_link", "https://b.example/"}});
  EXPECT_EQ(verdictsOn(payload),
            (std::vector<std::string>{"notText", "notApplicable", "empty", "absent", "opens",
                                      "notReached", "notReached", "notReached", "notReached"}));
  const Json link = sim::jsonFrom(of(payload)).at("link");
  EXPECT_EQ(link.at("key"), "deeplink");
  EXPECT_EQ(link.at("candidate"), "https://a.example/");
  EXPECT_EQ(link.at("url"), "https://a.example/");
  EXPECT_EQ(link.at("opens"), true);
  EXPECT_EQ(remarkOn(payload, "web_link"),
            "\"web_link\" holds another link, \"https://b.example/\", which never opens: "
            "\"deeplink\" comes first");
}

TEST_F(InspectionTest, TellsThatACandidateWhichIsNoURLBlocksLaterKeys) {
  const Json payload = with({{"url", "my page"}, {"link", "https://b.example/"}});
  const Json link = sim::jsonFrom(of(payload)).at("link");
  EXPECT_EQ(link.at("key"), "url");
  EXPECT_EQ(link.at("candidate"), "my page");
  EXPECT_EQ(link.at("url"), nullptr);
  EXPECT_EQ(link.at("opens"), false);
  EXPECT_EQ(verdictsOn(payload).front(), "noURL");
  EXPECT_EQ(remarkOn(payload, "url"),
            "\"my page\" has a space in it (write %20), so nothing opens; it also blocks \"link\", "
            "\"https://b.example/\"");
}

TEST_F(InspectionTest, TellsThatThereIsNoLink) {
  const Json link = sim::jsonFrom(of(with())).at("link");
  EXPECT_EQ(link.at("key"), nullptr);
  EXPECT_EQ(link.at("candidate"), nullptr);
  EXPECT_EQ(link.at("opens"), false);
  EXPECT_EQ(link.at("reason"), "none of the link keys holds a link");
  EXPECT_EQ(link.at("considered").size(), 9U);
}

TEST_F(InspectionTest, RecognisesATestNotification) {
  EXPECT_TRUE(of(with({{"pn_type", "PUSH-NOTIFICATION-SEND-TEST"}})).isTest);
  const Json nearly = with({{"pn_type", "push-notification-send-test"}});
  EXPECT_FALSE(of(nearly).isTest);
  EXPECT_NE(remarkOn(nearly, "pn_type"), "");
}

TEST_F(InspectionTest, HasNoRemarkOnASoundPayload) {
  const Json payload = with({{"pn_campaign_id", "spring"}, {"url", "shop://deal?ids=1"}});
  EXPECT_TRUE(of(payload).remarks.empty());
}

TEST_F(InspectionTest, RemarksOnLikelyMistakes) {
  struct Case {
    Json members;
    std::string key;
    std::string part;
  };
  const std::vector<Case> cases{
      {{{"node_id", 5}}, "node_id", "write \"5\""},
      {{{"URL", "https://a.example/"}}, "URL", "the key is \"url\""},
      {{{"customerKey", "5"}}, "customerKey", "the key is \"customer_key\""},
      {{{"data", {{"url", "https://a.example/"}}}}, "data.url", "move \"url\" to the top level"},
      {{{"list", {{{"club", "gold"}}}}}, "list.0.club", "a value is nested"},
      {{{"domain_userid", "u"}}, "domain_userid", "filled from \"_id\""},
      {{{"user_id", "u"}}, "user_id", "null always"},
      {{{"ma_channel", "mail"}}, "ma_channel", "the event says \"push\" always"},
      {{{"event_type", "x"}}, "event_type", "decides the event's type"},
      {{{"club", ""}}, "club", "reported as an empty text"},
      {{{"url", "n/a"}}, "url", "is taken for a link"},
      {{{"url", "www.example.com"}}, "url", "has no scheme"},
      {{{"url", " https://a.example/"}}, "url", "a space before or after"},
      {{{"url", "https://a.example/ä"}}, "url", "beyond ASCII"},
      {{{"url", "https://a.example/{id}"}}, "url", "has { in it"},
      {{{"url", "https://a.example/%zz"}}, "url", "is no valid URL"},
      {{{"aps", 5}}, "aps", "not an object"},
      {{{"aps", Json::object()}}, "aps", "no \"alert\""},
      {{{"aps", {{"Alert", "x"}}}}, "aps", "\"Alert\" is another key than \"alert\""},
      {{{"aps", {{"alert", 5}}}}, "aps.alert", "is a number, not a text or an object"},
      {{{"aps", {{"alert", nullptr}}}}, "aps.alert", "is null, not a text or an object"},
      {{{"aps", {{"alert", {"x"}}}}}, "aps.alert", "is a list, not a text or an object"},
      {{{"aps", {{"alert", ""}}}}, "aps.alert", "an empty text"},
      {{{"aps", {{"alert", Json::object()}}}}, "aps.alert", "no text as \"title\""},
      {{{"aps", {{"alert", {{"body", ""}}}}}}, "aps.alert", "no text as \"title\""},
      {{{"aps", {{"alert", {{"Title", "x"}}}}}},
       "aps.alert",
       "\"Title\" is another key than \"title\""},
      {{{"node_id", 1.5e300}}, "node_id", "write it in quotation marks"},
      {{{"node_id", true}}, "node_id", "write \"true\""},
      {{{"deep-link", "a:b"}}, "deep-link", "the key is \"deep_link\" or \"deeplink\""},
      {{{"url", "a b"}, {"link", "c:d"}, {"web_link", "e:f"}},
       "url",
       "; it also blocks \"link\", \"c:d\", and \"web_link\", \"e:f\""},
      {{{"long", std::string(4096, 'x')}}, "", "refuses more than 4096"},
  };
  for (const Case& each : cases) {
    EXPECT_NE(remarkOn(with(each.members), each.key).find(each.part), std::string::npos)
        << each.members.dump() << ": " << remarkOn(with(each.members), each.key);
  }
  EXPECT_NE(remarkOn({{"club", "gold"}}, "aps"), "");
  EXPECT_NE(remarkOn({{"APS", {{"alert", "x"}}}}, "aps").find("\"APS\" is another key than"),
            std::string::npos);
}

TEST_F(InspectionTest, RemarksOnEachMistakeOnce) {
  const Inspection inspection = of(with({{"deep-link", "a:b"},
                                         {"data", {{"url", "c:d"}}},
                                         {"more", {{"url", "c:d"}}},
                                         {"alert-key", 1}}));
  std::set<std::string> messages;
  for (const sim::Remark& remark : inspection.remarks) messages.insert(remark.message);
  EXPECT_EQ(messages.size(), 3U);
  EXPECT_EQ(inspection.remarks.size(), 3U);
}

TEST_F(InspectionTest, ShowsTheNamesOfTextsInTheUsersLanguage) {
  const auto alert = of({{"aps", {{"alert", {{"loc-key", "SALE"}}}}}}).alert;
  ASSERT_TRUE(alert);
  EXPECT_EQ(alert->body, "SALE");
  EXPECT_EQ(remarkOn({{"aps", {{"alert", {{"title-loc-key", "SALE"}}}}}}, "aps.alert"), "");
}

TEST_F(InspectionTest, RemarksOnKeysThatStandTwice) {
  const Inspection inspection = sim::inspect(
      R"({"aps": {"alert": "x"}, "url": "a:b", "url": "c:d", "list": [{"n": 1, "n": 2, "n": 3}]})",
      "notification-clicked");
  ASSERT_EQ(inspection.remarks.size(), 2U);
  EXPECT_EQ(inspection.remarks[0].key, "url");
  EXPECT_EQ(inspection.remarks[0].message,
            "\"url\" stands twice in one object, and only one of the two counts");
  EXPECT_EQ(inspection.remarks[1].key, "list.0.n");
}

TEST_F(InspectionTest, ReadsWhatIsNotUTF8AndSaysSo) {
  const std::string text = with({{"club", "gold"}}).dump();
  std::string wide = "\xff\xfe";
  for (const char character : text) wide += {character, '\0'};
  const Inspection inspection = sim::inspect(wide, "notification-clicked");
  EXPECT_EQ(sim::jsonFrom(inspection).at("event").at("club"), "gold");
  ASSERT_EQ(inspection.remarks.size(), 1U);
  EXPECT_EQ(inspection.remarks[0].message,
            "the file is not UTF-8, which is all that the push service takes");
  EXPECT_TRUE(sim::inspect("\xef\xbb\xbf" + text, "notification-clicked").remarks.empty());
}

TEST_F(InspectionTest, SaysThatTheSystemCannotOpenWhatHasNoScheme) {
  const Inspection inspection = of(with({{"url", "www.example.com"}}));
  EXPECT_FALSE(inspection.link.isOpenedBySystem);
  EXPECT_EQ(inspection.link.considered.front().note,
            "the first link, so it decides, but the system cannot open it: \"www.example.com\"");
  EXPECT_NE(sim::textFrom(inspection)
                .find("\nTapped, it asks for what the system cannot open: www.example.com\n"),
            std::string::npos);
  EXPECT_EQ(sim::jsonFrom(inspection).at("link").at("url"), "www.example.com");
}

TEST_F(InspectionTest, SaysThatAnEventTypeIsEmpty) {
  const Inspection inspection = of(with(), "");
  EXPECT_TRUE(sim::textFrom(inspection).starts_with("Without a type, reported is:\n"));
  ASSERT_EQ(inspection.remarks.size(), 1U);
  EXPECT_TRUE(inspection.remarks[0].message.starts_with("the event type is empty: "));
}

TEST_F(InspectionTest, LeavesOutWhatOnlySimulatorsRead) {
  const Json payload = with({{"Simulator Target Bundle", "com.example.App"}});
  EXPECT_EQ(of(payload).size, with().dump().size());
}

TEST_F(InspectionTest, MeasuresThePayloadHoweverItIsLaidOut) {
  EXPECT_EQ(sim::inspect(with().dump(4), "x").size, with().dump().size());
}

TEST_F(InspectionTest, RefusesWhatIsNoPayload) {
  for (const std::string text :
       {"", "[1]", "5", "{", R"({"a": 1} x)", "{\"a\": \"\xff\"}", R"({"a": "\ud800"})"}) {
    try {
      static_cast<void>(sim::inspect(text, "x"));
      ADD_FAILURE() << text;
    } catch (const sim::ScenarioError& error) {
      EXPECT_TRUE(std::string(error.what()).starts_with("(root): ")) << error.what();
      EXPECT_NE(std::string(error.what()).find("; allowed: a JSON object"), std::string::npos);
    }
  }
}

TEST_F(InspectionTest, SaysWhatStandsThereInPlaceOfAnObject) {
  const std::vector<std::pair<std::string, std::string>> cases{{" 5\n", "a number"},
                                                               {"\"a\"", "a text"},
                                                               {"true", "true or false"},
                                                               {"null", "null"},
                                                               {"[]", "a list"}};
  for (const auto& [text, kind] : cases) {
    try {
      static_cast<void>(sim::inspect(text, "x"));
      ADD_FAILURE() << text;
    } catch (const sim::ScenarioError& error) {
      EXPECT_EQ(std::string(error.what()),
                "(root): got " + kind + "; allowed: a JSON object, such as an .apns file");
    }
  }
}

TEST_F(InspectionTest, SurvivesHostilePayloads) {
  const std::string deep = "{\"a\":" + std::string(100'000, '[') + std::string(100'000, ']') + "}";
  EXPECT_THROW(static_cast<void>(sim::inspect(deep, "x")), sim::ScenarioError);
  Json many = Json::object();
  for (int index = 0; index < 2000; ++index) many["k" + std::to_string(index)] = {{"url", "x"}};
  EXPECT_LE(of(many).remarks.size(), 32U);
}

TEST_F(InspectionTest, ReadsForPeople) {
  const std::string text = sim::textFrom(of(with({{"url", "https://a.example/"}})));
  EXPECT_TRUE(text.starts_with("Tapped, reported is:\n"));
  EXPECT_NE(text.find("\nTapped, it opens https://a.example/\n"), std::string::npos);
  EXPECT_NE(text.find("\nNo remarks\n"), std::string::npos);
  EXPECT_NE(text.find("\nSize: 52 bytes of 4,096\n"), std::string::npos);
}

}  // namespace
