#include "Simulator/Scenario/Reader.h"

#include <gtest/gtest.h>

#include <ostream>

#include "Simulator/Scenario/ScenarioError.h"
#include "Tests/Support/RowName.h"

namespace {

// What is said about a scenario, or nothing if it is accepted.
std::string complaintAbout(const std::string& text) {
  try {
    static_cast<void>(sim::readScenario(text, "unnamed"));
  } catch (const sim::ScenarioError& error) {
    return error.what();
  }
  return {};
}

std::string withStep(const std::string& step) { return R"({"steps": [)" + step + "]}"; }

std::string withHost(const std::string& host) { return R"({"steps": [], "host": )" + host + "}"; }

struct Mistake {
  const char* name;
  std::string scenario;
  std::string complaint;

  // How the test runner shows it.
  friend std::ostream& operator<<(std::ostream& out, const Mistake& mistake) {
    return out << mistake.scenario;
  }
};

class RefusedScenarioTest : public testing::TestWithParam<Mistake> {};

TEST_P(RefusedScenarioTest, IsPointedAt) {
  EXPECT_EQ(complaintAbout(GetParam().scenario), GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    Document, RefusedScenarioTest,
    testing::Values(
        Mistake{"NoObject", "[]", "(root): got a list; allowed: an object"},
        Mistake{"NoSteps", "{}", R"((root): the key "steps" is missing; allowed: a value for it)"},
        Mistake{"StepsAreNoList", R"({"steps": {}})", "/steps: got an object; allowed: a list"},
        Mistake{"Syntax", R"({"steps": [})",
                "(root): parse error at line 1, column 12: syntax error while parsing value - "
                "unexpected '}'; expected '[', '{', or a literal; allowed: a JSON document"},
        Mistake{"Empty", "", "(root): there is no text; allowed: a JSON document"},
        Mistake{"Blank", " \r\n\t", "(root): there is no text; allowed: a JSON document"},
        Mistake{"NumberOutOfRange", R"({"steps": [], "name": 1e999})",
                "(root): number overflow parsing '1e999'; allowed: a JSON document"},
        Mistake{"DuplicateKey", R"({"steps": [], "steps": []})",
                "/steps: the key stands twice in one object; allowed: each key once"},
        Mistake{"DuplicateKeyInAList",
                withStep(R"({"do": "state"}, {"do": "state", "do": "state"})"),
                "/steps/1/do: the key stands twice in one object; allowed: each key once"},
        Mistake{"DuplicateKeyInAPayload",
                withStep(R"({"do": "present", "userInfo": {"a": [0, {"b/c": 1, "b/c": 2}]}})"),
                "/steps/0/userInfo/a/1/b~1c: the key stands twice in one object; allowed: each key "
                "once"},
        Mistake{"NameIsNoText", R"({"steps": [], "name": 5})", "/name: got 5; allowed: a text"},
        Mistake{"LineBreakInAKey", R"({"steps": [], "a\nb": 1})",
                R"(/a\u000ab: unknown key; allowed: "name", "device", "core", "host", "network", )"
                R"("steps", "expect", "$schema")"}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    UnknownKey, RefusedScenarioTest,
    testing::Values(
        Mistake{"InTheDevice", R"({"steps": [], "device": {"os": "17.0"}})",
                R"(/device/os: unknown key; allowed: "osVersion", "bundlePath", "application", )"
                R"("bundleIdentifier", "asksDelegate", "authorization", "opensURLs", "documents")"},
        Mistake{
            "InTheAuthorization", R"({"steps": [], "device": {"authorization": {"deny": true}}})",
            R"(/device/authorization/deny: unknown key; allowed: "granted", "error", "answer")"},
        Mistake{"InAnError",
                R"({"steps": [], "device": {"authorization": {"error": {"text": "x"}}}})",
                R"(/device/authorization/error/text: unknown key; allowed: "domain", "code", )"
                R"("description")"},
        Mistake{"InTheCore", R"({"steps": [], "core": {"endpoint": null}})",
                R"(/core/endpoint: unknown key; allowed: "config", "pushConfigEndpoint")"},
        Mistake{"InTheConfiguration", R"({"steps": [], "core": {"config": {"auto": true}}})",
                R"(/core/config/auto: unknown key; allowed: "autoSwizzlingEnabled")"},
        Mistake{"InTheHost", withHost(R"({"delegate": null})"),
                R"(/host/delegate: unknown key; allowed: "appDelegate", "notificationDelegate", )"
                R"("scenes", "firebase", "messagingDelegate", "urlDelegate")"},
        Mistake{
            "InADelegate", withHost(R"({"appDelegate": {"class": "A", "methods": []}})"),
            R"(/host/appDelegate/methods: unknown key; allowed: "class", "superclass", )"
            R"("implements", "openURLReturns", "options", "completes", "throws", "callsSuper", )"
            R"("forwardsTo", "forwarding")"},
        Mistake{
            "InASuperclass",
            withHost(R"({"appDelegate": {"class": "A", "superclass": {"name": "B"}}})"),
            R"(/host/appDelegate/superclass/name: unknown key; allowed: "class", "superclass", )"
            R"("implements", "openURLReturns", "options", "completes", "throws", "callsSuper", )"
            R"("forwardsTo", "forwarding")"},
        Mistake{
            "InAScene", withHost(R"({"scenes": [{}, {"windows": true}]})"),
            R"(/host/scenes/1/windows: unknown key, did you mean "window"?; allowed: "window", )"
            R"("delegate")"},
        Mistake{"InFirebase", withHost(R"({"firebase": {"class": true}})"),
                R"(/host/firebase/class: unknown key; allowed: "classMethod", "instance", )"
                R"("delegateProperty", "settable", "delegate")"},
        Mistake{"InAStep", withStep(R"({"do": "configure", "application": null})"),
                R"(/steps/0/application: unknown key; allowed: "do", "thread")"},
        Mistake{
            "InArguments",
            withStep(R"({"do": "call", "operation": "setupAutoSwizzling", "arguments": {"a": 1}})"),
            "/steps/0/arguments/a: unknown key; allowed: no keys"},
        Mistake{"BesideAbsent", R"({"steps": [], "expect": [{"absent": {}, "kind": "log"}]})",
                R"(/expect/0/kind: unknown key; allowed: "absent")"}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    WrongValue, RefusedScenarioTest,
    testing::Values(
        Mistake{"SectionIsNull", R"({"steps": [], "device": null})",
                "/device: got null; allowed: an object"},
        Mistake{"VersionIsANumber", R"({"steps": [], "device": {"osVersion": 17.0}})",
                "/device/osVersion: got 17.0; allowed: a text"},
        Mistake{"VersionWithoutMinor", R"({"steps": [], "device": {"osVersion": "17"}})",
                R"(/device/osVersion: got "17"; allowed: "MAJOR.MINOR")"},
        Mistake{"VersionOfThree", R"({"steps": [], "device": {"osVersion": "17.0.1"}})",
                R"(/device/osVersion: got "17.0.1"; allowed: "MAJOR.MINOR")"},
        Mistake{
            "Application", R"({"steps": [], "device": {"application": "absent"}})",
            R"(/device/application: got "absent"; allowed: "present", "noClass", "noInstance", )"
            R"("noOpenURL", "late")"},
        Mistake{"Answer", R"({"steps": [], "device": {"authorization": {"answer": "never"}}})",
                R"(/device/authorization/answer: got "never"; allowed: "auto", "manual")"},
        Mistake{"Boolean", R"({"steps": [], "device": {"opensURLs": 1}})",
                "/device/opensURLs: got 1; allowed: true, false"},
        Mistake{"Documents", R"({"steps": [], "device": {"documents": "full"}})",
                R"(/device/documents: got "full"; allowed: "writable", "readOnly", "missing")"},
        Mistake{"ErrorCode", withStep(R"({"do": "registrationFailure",
                             "error": {"domain": "d", "code": 1.5, "description": "t"}})"),
                "/steps/0/error/code: got 1.5; allowed: an integer"},
        Mistake{"ErrorWithoutADescription",
                withStep(R"({"do": "registrationFailure", "error": {"domain": "d", "code": 1}})"),
                R"(/steps/0/error: the key "description" is missing; allowed: a value for it)"},
        Mistake{"MessagingDelegate", withHost(R"({"messagingDelegate": "gone"})"),
                R"(/host/messagingDelegate: got "gone"; allowed: true, false, "released")"},
        Mistake{"URLDelegate", withHost(R"({"urlDelegate": "yes"})"),
                R"(/host/urlDelegate: got "yes"; allowed: null, true, false)"},
        Mistake{
            "Method", withHost(R"({"appDelegate": {"class": "A", "implements": ["didTap"]}})"),
            R"(/host/appDelegate/implements/0: got "didTap"; allowed: "didRegister", "didFail", )"
            R"("openURL", "openURLContexts", "willPresent", "didReceive", "token", )"
            R"("openURLFromSource", "handleOpenURL")"},
        Mistake{"NegativeOptions", withHost(R"({"appDelegate": {"class": "A", "options": -1}})"),
                "/host/appDelegate/options: got -1; allowed: a number of options from 0"},
        Mistake{"Completes", withHost(R"({"appDelegate": {"class": "A", "completes": "never"}})"),
                R"(/host/appDelegate/completes: got "never"; allowed: true, false, "twice", )"
                R"("later", "elsewhere")"},
        Mistake{"CompletesIsANumber",
                withHost(R"({"appDelegate": {"class": "A", "completes": 0}})"),
                R"(/host/appDelegate/completes: got 0; allowed: true, false, "twice", "later", )"
                R"("elsewhere")"},
        Mistake{"DelegateWithoutAClass", withHost(R"({"appDelegate": {"implements": []}})"),
                R"(/host/appDelegate: the key "class" is missing; allowed: a value for it)"},
        Mistake{
            "NotificationDelegateByName", withHost(R"({"notificationDelegate": "host"})"),
            R"(/host/notificationDelegate: got "host"; allowed: an object, null, "appDelegate")"},
        Mistake{"SceneDelegateByName", withHost(R"({"scenes": [{"delegate": "appDelegate"}]})"),
                R"(/host/scenes/0/delegate: got "appDelegate"; allowed: an object, null)"},
        Mistake{"Expectation", R"({"steps": [], "expect": ["log"]})",
                R"(/expect/0: got "log"; allowed: an object)"},
        Mistake{"AbsentIsNoObject", R"({"steps": [], "expect": [{"absent": true}]})",
                "/expect/0/absent: got true; allowed: an object"},
        Mistake{"PartIsNoText",
                R"({"steps": [], "expect": [{"kind": "log", "message": {"contains": 3}}]})",
                "/expect/0/message/contains: got 3; allowed: a text"},
        Mistake{"PartIsMisspelt",
                R"({"steps": [], "expect": [{"kind": "log", "message": {"contain": "a"}}]})",
                R"(/expect/0/message/contain: unknown key, did you mean "contains"?; allowed: )"
                R"("contains")"}),
    test::rowName);

std::string withExpectation(const std::string& item) {
  return R"({"steps": [], "expect": [)" + item + "]}";
}

// What no entry can ever match, and what holds whatever happens, would check nothing.
INSTANTIATE_TEST_SUITE_P(
    IdleExpectation, RefusedScenarioTest,
    testing::Values(
        Mistake{"UnorderedOfNothing", withExpectation(R"({"unordered": []})"),
                "/expect/0/unordered: there is nothing to expect; allowed: a list of at least one "
                "item"},
        Mistake{"Operation",
                withExpectation(R"({"absent": {"kind": "storage", "operation": "saveFcmTokens"}})"),
                R"(/expect/0/absent/operation: got "saveFcmTokens", did you mean )"
                R"("saveFCMToken"?; allowed: "savePushPermission", "saveFCMToken")"},
        Mistake{"PartOfNoOperation",
                withExpectation(
                    R"({"absent": {"kind": "storage", "operation": {"contains": "saveFcm"}}})"),
                R"(/expect/0/absent/operation/contains: got "saveFcm"; allowed: a part of one of )"
                R"("savePushPermission", "saveFCMToken")"},
        Mistake{"LogLevel", withExpectation(R"({"absent": {"kind": "log", "level": "warning"}})"),
                R"(/expect/0/absent/level: got "warning"; allowed: "info", "error")"},
        Mistake{"FieldOfAnError",
                withExpectation(R"({"absent": {"kind": "log", "error": {"cod": 1}}})"),
                R"(/expect/0/absent/error/cod: unknown key, did you mean "code"?; allowed: )"
                R"("domain", "code", "description")"},
        Mistake{"CodeOfAnError",
                withExpectation(R"({"count": 0, "of": {"kind": "log", "error": {"code": "1"}}})"),
                R"(/expect/0/of/error/code: got "1"; allowed: an integer)"},
        Mistake{"CodeOfAProblem",
                withExpectation(R"({"absent": {"kind": "problem", "code": "completionTwice"}})"),
                R"(/expect/0/absent/code: got "completionTwice"; allowed: )"
                R"("completionNeverCalled", "completionCalledTwice", "noRequestToAnswer", )"
                R"("methodNotReplaced", "uncaughtException")"},
        Mistake{"FieldOfAnEvent",
                withExpectation(R"({"absent": {"kind": "event", "data": {"clubs": "gold"}}})"),
                R"(/expect/0/absent/data/clubs: unknown key, did you mean "club"?; allowed: )"
                R"("pn_campaign_id", "ma_campaign_id", "node_id", "ma_channel", "user_id", )"
                R"("event_type", "club", "environment", "customer_key", "reasons", )"
                R"("campaign_source", "platform_name", "click_url", "domain_userid")"},
        Mistake{"IndexAsText", withExpectation(R"({"kind": "step", "index": "0"})"),
                R"(/expect/0/index: got "0"; allowed: an integer from 0 on)"},
        Mistake{"NegativeIndex", withExpectation(R"({"kind": "step", "index": -1})"),
                "/expect/0/index: got -1; allowed: an integer from 0 on"},
        Mistake{"ThreadAsNumber", withExpectation(R"({"absent": {"thread": 1}})"),
                R"(/expect/0/absent/thread: got 1; allowed: a text, null, {"contains": a text})"},
        Mistake{"OperationOfNoKind", withExpectation(R"({"absent": {"operation": "openUrls"}})"),
                R"(/expect/0/absent: no entry has these values; allowed: values of one of the )"
                R"(kinds that have these keys: "storage", "core", "delegate", "system")"},
        Mistake{"ValueOfTheOneKindThatHasTheKeys",
                withExpectation(R"({"absent": {"urls": "https://a.example/"}})"),
                R"(/expect/0/absent/urls: got "https://a.example/"; allowed: a list, )"
                R"({"contains": …})"},
        Mistake{"KeysOfTwoKinds", withExpectation(R"({"absent": {"index": 0, "message": "a"}})"),
                "/expect/0/absent: no kind of entry has all of these keys; allowed: keys that "
                "entries of one kind have"},
        Mistake{"CountInUnordered",
                withExpectation(R"({"unordered": [{"count": 1, "of": {"kind": "log"}}]})"),
                R"(/expect/0/unordered/0/count: stands only in the list "expect" itself, and not )"
                R"(inside of an item; allowed: the keys of an entry)"},
        Mistake{"AbsentInCount", withExpectation(R"({"count": 1, "of": {"absent": {}}})"),
                R"(/expect/0/of/absent: stands only in the list "expect" itself, and not inside )"
                R"(of an item; allowed: the keys of an entry)"}),
    test::rowName);

// Each says something of the timeline, or stands for a number that is whole.
TEST(ReaderTest, TakesExpectationsThatCanBeMetAndMissed) {
  for (const char* const item :
       {"{}", R"({"count": 3, "of": {}})", R"({"kind": {"contains": "Config"}, "config": {}})",
        R"({"operation": {"contains": "register"}})", R"({"operation": "openURL", "options": {}})",
        R"({"count": 1.0, "of": {"kind": "log"}})", R"({"count": 1e3, "of": {"kind": "log"}})",
        R"({"count": 18446744073709551616, "of": {"kind": "log"}})",
        R"({"kind": "step", "index": 1.0})", R"({"kind": "log", "message": null})",
        R"({"kind": "completion", "options": 18446744073709551615})",
        R"({"kind": "log", "error": {"code": 1.0, "domain": {"contains": "a"}}})"}) {
    EXPECT_EQ(complaintAbout(withExpectation(item)), "") << item;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Step, RefusedScenarioTest,
    testing::Values(
        Mistake{"IsNoObject", withStep(R"("configure")"),
                R"(/steps/0: got "configure"; allowed: an object)"},
        Mistake{"WithoutAVerb", withStep("{}"),
                R"(/steps/0: the key "do" is missing; allowed: a value for it)"},
        Mistake{"WithoutAField", withStep(R"({"do": "present"})"),
                R"(/steps/0: the key "userInfo" is missing, and there is no "userInfoFile"; )"
                R"(allowed: one of "userInfo", "userInfoFile")"},
        Mistake{"WithoutAnOperation", withStep(R"({"do": "call"})"),
                R"(/steps/0: the key "operation" is missing; allowed: a value for it)"},
        Mistake{"WithoutArguments", withStep(R"({"do": "call", "operation": "setPushToken"})"),
                R"(/steps/0: the key "arguments" is missing; allowed: a value for it)"},
        Mistake{"WithoutAnArgument",
                withStep(R"({"do": "call", "operation": "setPushToken", "arguments": {}})"),
                R"(/steps/0/arguments: the key "hex" is missing; allowed: a value for it)"},
        Mistake{"Thread", withStep(R"({"do": "state", "thread": 5})"),
                "/steps/0/thread: got 5; allowed: a text"},
        Mistake{"ThreadWithoutAName", withStep(R"({"do": "state", "thread": ""})"),
                R"(/steps/0/thread: got ""; allowed: a name)"},
        Mistake{"OddHex", withStep(R"({"do": "deviceToken", "hex": "abc"})"),
                R"(/steps/0/hex: got "abc"; allowed: an even number of hexadecimal digits)"},
        Mistake{"BadHex", withStep(R"({"do": "deviceToken", "hex": "0g"})"),
                R"(/steps/0/hex: got "0g"; allowed: an even number of hexadecimal digits)"},
        Mistake{
            "BadHexArgument",
            withStep(R"({"do": "call", "operation": "setPushToken", "arguments": {"hex": "0x"}})"),
            R"(/steps/0/arguments/hex: got "0x"; allowed: an even number of hexadecimal digits)"},
        Mistake{"UserInfo", withStep(R"({"do": "present", "userInfo": []})"),
                "/steps/0/userInfo: got a list; allowed: an object"},
        Mistake{"URL", withStep(R"({"do": "openURL", "url": "not a link"})"),
                R"(/steps/0/url: got "not a link"; allowed: a URL)"},
        Mistake{"NegativeSeconds", withStep(R"({"do": "advance", "seconds": -1})"),
                "/steps/0/seconds: got -1; allowed: a number from 0 to 1000000000"},
        Mistake{"SwitchedToNull", withStep(R"({"do": "setSwizzlingEnabled", "value": null})"),
                "/steps/0/value: got null; allowed: true, false"},
        Mistake{"TokenIsANumber", withStep(R"({"do": "fcmToken", "token": 1})"),
                "/steps/0/token: got 1; allowed: a text, null"},
        Mistake{"AnswerOfNoBoolean", withStep(R"({"do": "answerAuthorization", "granted": "yes"})"),
                R"(/steps/0/granted: got "yes"; allowed: true, false)"},
        Mistake{"FirebaseDelegateByName",
                withStep(R"({"do": "setFirebase", "delegate": "appDelegate"})"),
                R"(/steps/0/delegate: got "appDelegate"; allowed: an object, null)"},
        Mistake{"NoSceneToOpen", withStep(R"({"do": "sceneOpenURLs", "urls": []})"),
                "/steps/0: got 0; allowed: none, since no scene is connected"},
        Mistake{"SceneOutOfRange", withStep(R"({"do": "connectScene"},
                            {"do": "sceneOpenURLs", "scene": 1, "urls": []})"),
                "/steps/1/scene: got 1; allowed: 0 to 0"},
        Mistake{"SceneBeforeItConnects",
                R"({"host": {"scenes": [{}, {}]}, "steps": [
                    {"do": "sceneOpenURLs", "scene": 2, "urls": []}, {"do": "connectScene"}]})",
                "/steps/0/scene: got 2; allowed: 0 to 1"}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    HostClass, RefusedScenarioTest,
    testing::Values(
        Mistake{
            "InTwoWays", withHost(R"({"appDelegate": {"class": "A"},
                             "notificationDelegate": {"class": "A", "implements": ["didReceive"]}})"),
            R"(/host/notificationDelegate: the class "A" is described in two ways; allowed: one )"
            "description, or the same one again"},
        Mistake{"AsSuperclassInTwoWays",
                withHost(R"({"appDelegate": {"class": "A", "implements": ["openURL"]}, "scenes": [
                             {"delegate": {"class": "B", "superclass": {"class": "A"}}}]})"),
                R"(/host/scenes/0/delegate/superclass: the class "A" is described in two ways; )"
                "allowed: one description, or the same one again"},
        Mistake{
            "InTwoWaysByAStep", withStep(R"({"do": "setNotificationDelegate",
                             "delegate": {"class": "HostAppDelegate"}})"),
            R"(/steps/0/delegate: the class "HostAppDelegate" is described in two ways; allowed: )"
            "one description, or the same one again"},
        Mistake{
            "OfTheSystem", withHost(R"({"appDelegate": {"class": "NSObject"}})"),
            "/host/appDelegate/class: a class of the system is called NSObject; allowed: another "
            "name"},
        Mistake{"RegisteredLater", withHost(R"({"appDelegate": {"class": "UIWindowScene"}})"),
                "/host/appDelegate/class: a class of the system is called UIWindowScene; allowed: "
                "another name"},
        Mistake{"WithoutAName", withHost(R"({"appDelegate": {"class": ""}})"),
                R"(/host/appDelegate/class: got ""; allowed: the name of a class)"}),
    test::rowName);

TEST(ReaderTest, ListsWhatIsAllowedForAnUnknownVerb) {
  const std::string complaint = complaintAbout(withStep(R"({"do": "tap"})"));
  EXPECT_TRUE(complaint.starts_with(R"(/steps/0/do: got "tap"; allowed: "configure", )"))
      << complaint;
}

TEST(ReaderTest, ListsWhatIsAllowedForAnUnknownOperation) {
  const std::string complaint =
      complaintAbout(withStep(R"({"do": "call", "operation": "tap", "arguments": {}})"));
  EXPECT_TRUE(
      complaint.starts_with(R"(/steps/0/operation: got "tap"; allowed: "setupAutoSwizzling", )"))
      << complaint;
}

TEST(ReaderTest, ShortensWhatItQuotes) {
  const std::string endless(100'000, 'a');
  const std::string syntax = complaintAbout(R"({"name": ")" + endless);
  EXPECT_LT(syntax.size(), 300U);
  const std::string value = complaintAbout(withStep(R"({"do": ")" + endless + R"("})"));
  EXPECT_TRUE(value.starts_with("/steps/0/do: got \"aaaa"));
  EXPECT_EQ(value.find(endless), std::string::npos);
}

TEST(ReaderTest, RefusesNestingWithoutEnd) {
  constexpr std::size_t depth = 200'000;
  const std::string lists = std::string(depth, '[') + std::string(depth, ']');
  EXPECT_EQ(complaintAbout(R"({"steps": [], "expect": [{"kind": )" + lists + "}]}"),
            "/expect/0/kind/0: nested too deep; allowed: 1040 levels in a scenario");
  EXPECT_EQ(complaintAbout(withStep(R"({"do": "present", "userInfo": {"a": )" + lists + "}}")),
            "/steps/0/userInfo/a: nested too deep; allowed: 1040 levels in a scenario");
}

TEST(ReaderTest, TakesAPayloadAsDeepAsThePlatformDoes) {
  const auto payload = [](std::size_t depth) {
    return withStep(R"({"do": "present", "userInfo": {"a": )" + std::string(depth - 1, '[') +
                    std::string(depth - 1, ']') + "}}");
  };
  EXPECT_EQ(complaintAbout(payload(1024)), "");
  EXPECT_EQ(complaintAbout(payload(1025)),
            "/steps/0/userInfo: nested too deep; allowed: 1024 levels");
}

TEST(ReaderTest, FillsInWhatIsLeftOut) {
  const sim::Scenario scenario = sim::readScenario(R"({"steps": []})", "from the file");
  EXPECT_EQ(scenario.name, "from the file");
  EXPECT_EQ(scenario.device.osVersion, (sim::SystemVersion{17, 0}));
  EXPECT_EQ(scenario.device.bundlePath, "/Applications/HostApp.app");
  EXPECT_EQ(scenario.device.application, sim::uikit::ApplicationPresence::present);
  EXPECT_TRUE(scenario.device.authorization.granted);
  EXPECT_FALSE(scenario.device.authorization.error);
  EXPECT_TRUE(scenario.device.answersByItself);
  EXPECT_TRUE(scenario.device.opensURLs);
  EXPECT_EQ(scenario.device.documents, sim::Documents::writable);
  EXPECT_FALSE(scenario.core.config);
  EXPECT_FALSE(scenario.core.pushConfigEndpoint);
  EXPECT_EQ(scenario.host.appDelegate.className, "HostAppDelegate");
  EXPECT_EQ(
      scenario.hostClasses.at("HostAppDelegate").implements,
      (std::set{sim::HostMethod::didRegister, sim::HostMethod::didFail, sim::HostMethod::openURL}));
  EXPECT_EQ(scenario.host.notificationDelegate.kind, sim::DelegateDescription::Kind::none);
  EXPECT_TRUE(scenario.host.scenes.empty());
  EXPECT_FALSE(scenario.host.firebase);
  EXPECT_EQ(scenario.host.messagingDelegate, sim::HostDescription::MessagingDelegate::kept);
  EXPECT_FALSE(scenario.host.urlDelegate);
}

TEST(ReaderTest, FillsInWhatADelegateLeavesOut) {
  const sim::Scenario scenario =
      sim::readScenario(withHost(R"({"appDelegate": {"class": "A"}})"), "unnamed");
  const sim::HostClassDescription& cls = scenario.hostClasses.at("A");
  EXPECT_TRUE(cls.implements.empty());
  EXPECT_EQ(cls.superclass, "");
  EXPECT_TRUE(cls.openURLReturns);
  EXPECT_EQ(cls.options, 0U);
  EXPECT_EQ(cls.completes, sim::Completes::once);
}

TEST(ReaderTest, TakesOneClassTwiceIfItIsDescribedAlike) {
  const sim::Scenario scenario =
      sim::readScenario(withHost(R"({"appDelegate": {"class": "B", "superclass": {"class": "A"}},
                   "notificationDelegate": {"class": "A"},
                   "scenes": [{"delegate": {"class": "B", "superclass": {"class": "A"}}}]})"),
                        "unnamed");
  EXPECT_EQ(scenario.hostClasses.size(), 2U);
  EXPECT_EQ(scenario.hostClasses.at("B").superclass, "A");
}

}  // namespace
