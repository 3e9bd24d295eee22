// However a host integrates the module, the same story reports, stores and tells the same. The
// table of docs/equivalence.md is this suite's; with ZIB_WRITE_DOCUMENTATION in the environment it
// is written instead of compared.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Scenario/PlayInProcess.h"
#include "Simulator/Scenario/Reader.h"
#include "Tests/Support/RowName.h"

namespace {

using sim::Json;

// What a host is and what the system does, whichever way the module is integrated.
struct Story {
  const char* name;
  std::string sentence;
  Json scenario;

  // How the test runner shows it.
  friend std::ostream& operator<<(std::ostream& out, const Story& story) {
    return out << story.sentence;
  }
};

Json step(std::string_view verb, Json fields = Json::object()) {
  fields["do"] = verb;
  return fields;
}

Json call(std::string_view operation, const Json& arguments = Json::object()) {
  return step("call", {{"operation", operation}, {"arguments", arguments}});
}

const Json pushDelegate = {{"class", "PushDelegate"},
                           {"implements", {"willPresent", "didReceive"}}};
const Json tokenDelegate = {{"class", "TokenDelegate"}, {"implements", {"token"}}};
const Json sale = {{"aps", {{"alert", {{"title", "Sale"}}}}},
                   {"pn_campaign_id", "autumn"},
                   {"club", "gold"},
                   {"link", "https://shop.example/sale?ids[]=1"}};
const Json trial = {{"pn_type", "PUSH-NOTIFICATION-SEND-TEST"}, {"url", "shop://trial"}};
const Json noNetwork = {{"domain", "HostDomain"}, {"code", 7}, {"description", "No network"}};

Json storyOf(const Json& host, const std::vector<Json>& steps, const Json& device = Json::object(),
             const Json& network = Json::object()) {
  return {{"host", host}, {"steps", steps}, {"device", device}, {"network", network}};
}

// In the order of the table.
std::vector<Story> makeStories() {
  const Json configure = step("configure");
  const Json token = step("deviceToken", {{"hex", "00aaff"}});
  const Json push = {{"notificationDelegate", pushDelegate}};
  const Json firebase = {{"firebase", {{"delegate", tokenDelegate}}}};
  const Json remote = {
      {"config.example",
       {{"/push.json",
         {{"json",
           {{"ios_config_toggle", true},
            {"ios_private_key_url", "https://config.example/plist"}}}}},
        {"/plist", {{"text", "<plist><dict><key>ID</key><string>a</string></dict></plist>"}}}}}};
  return {
      {"Tokens", "The device's token, then Firebase's, and Firebase's again",
       storyOf(firebase, {configure, token, step("fcmToken", {{"token", "fcm-1"}}),
                          step("fcmToken", {{"token", "fcm-2"}})})},
      {"TokensToTheModule", "The same where the module itself is Firebase's delegate",
       storyOf({{"firebase", Json::object()}},
               {configure, token, step("fcmToken", {{"token", "fcm-1"}})})},
      {"TokenTooEarly", "Firebase's token before the device's, and once more after it",
       storyOf(firebase, {configure, step("fcmToken", {{"token", "early"}}), token,
                          step("fcmToken", {{"token", "fcm-1"}})})},
      {"NoToken", "Firebase has no token any more",
       storyOf(firebase, {configure, token, step("fcmToken", {{"token", "fcm-1"}}),
                          step("fcmToken", {{"token", nullptr}})})},
      {"RegistrationFails", "The registration for push fails",
       storyOf(Json::object(), {configure, step("registrationFailure", {{"error", noNetwork}})})},
      {"Granted", "The user allows notifications",
       storyOf(Json::object(), {configure, step("registerForPush"), token})},
      {"Denied", "The user does not allow notifications",
       storyOf(Json::object(), {configure, step("registerForPush")},
               {{"authorization", {{"granted", false}}}})},
      {"AskingFails", "The request for permission ends with an error",
       storyOf(Json::object(), {configure, step("registerForPush")},
               {{"authorization", {{"granted", false}, {"error", noNetwork}}}})},
      {"RemoteSwitch", "Push, and Firebase with it, is switched on by the remote configuration",
       storyOf({{"firebase", nullptr}},
               {configure,
                step("configurePush", {{"endpoint", "https://config.example/push.json"},
                                       {"firebase", Json::object()}}),
                token, step("fcmToken", {{"token", "fcm-1"}})},
               Json::object(), remote)},
      {"Foreground", "A notification arrives in the foreground",
       storyOf(push, {configure, step("present", {{"userInfo", sale}})})},
      {"Tap", "A tap on a notification with a link",
       storyOf(push, {configure, step("respond", {{"userInfo", sale}})})},
      {"TapOffTheMainThread", "A tap that the system reports on another thread",
       storyOf(push, {configure, step("respond", {{"userInfo", sale}, {"thread", "system"}})})},
      {"Action", "An action of a notification without a link",
       storyOf(push, {configure, step("respond", {{"userInfo", {{"node_id", "4"}, {"link", "NA"}}},
                                                  {"action", "action_2"}})})},
      {"TestNotification", "A notification that is a test, shown and tapped",
       storyOf(push, {configure, step("present", {{"userInfo", trial}}),
                      step("respond", {{"userInfo", trial}})})},
      {"HostTakesTheLink", "A tap whose link the host takes",
       storyOf({{"notificationDelegate", pushDelegate}, {"urlDelegate", true}},
               {configure, step("respond", {{"userInfo", sale}})})},
      {"ModuleIsTheDelegate", "Shown and tapped where the module is the delegate, a second later",
       storyOf(Json::object(),
               {configure, step("advance", {{"seconds", 1}}), step("present", {{"userInfo", sale}}),
                step("respond", {{"userInfo", sale}})})},
      {"LateDelegate", "Shown and tapped where the host's delegate came after 0.3 seconds",
       storyOf(Json::object(),
               {configure, step("advance", {{"seconds", 0.3}}),
                step("setNotificationDelegate", {{"delegate", pushDelegate}}),
                step("advance", {{"seconds", 1}}), step("present", {{"userInfo", sale}}),
                step("respond", {{"userInfo", sale}})})},
      {"DelegateGone", "The host lets its messaging delegate go between two taps",
       storyOf(push, {configure, step("respond", {{"userInfo", sale}}),
                      step("releaseMessagingDelegate"), step("respond", {{"userInfo", sale}})})},
      {"OneDelegateForAll", "One object is the delegate of the application and of notifications",
       storyOf(
           {{"appDelegate",
             {{"class", "App"},
              {"implements", {"didRegister", "didFail", "openURL", "willPresent", "didReceive"}}}},
            {"notificationDelegate", "appDelegate"}},
           {configure, token, step("present", {{"userInfo", sale}}),
            step("openURL", {{"url", "https://shop.example/?utm_source=mail"}}),
            step("respond", {{"userInfo", sale}})})},
  };
}

const std::vector<Story>& stories() {
  static const std::vector<Story> all = makeStories();
  return all;
}

// What a host that integrates by hand does in its own delegate methods: it hands on what it gets.
// Where it has no delegate the module is that itself, and there is nothing to hand on.
class ByHand {
 public:
  explicit ByHand(const Json& host)
      : hasNotificationDelegate_(host.contains("notificationDelegate")),
        hasFirebaseDelegate_(isThere(host, "firebase") && host["firebase"].contains("delegate")) {}

  std::vector<Json> steps(const Json& step) {
    std::vector<Json> all{step};
    const std::string verb = step["do"];
    if (verb == "configure") {
      all.push_back(call("setupAsNotificationDelegate"));
      all.push_back(call("ensureFirebaseMessagingDelegate"));
    }
    if (verb == "setNotificationDelegate") hasNotificationDelegate_ = true;
    if (Json handed = handedOn(step, verb); !handed.is_null()) {
      if (step.contains("thread")) handed["thread"] = step["thread"];
      all.push_back(std::move(handed));
    }
    return all;
  }

 private:
  static bool isThere(const Json& host, const char* key) {
    return host.contains(key) && !host[key].is_null();
  }

  [[nodiscard]] Json handedOn(Json step, const std::string& verb) const {
    step.erase("do");
    step.erase("thread");
    if (verb == "deviceToken") return call("didRegisterForRemoteNotifications", step);
    if (verb == "registrationFailure") return call("didFailToRegisterForRemoteNotifications", step);
    const bool isToken = verb == "fcmToken" && hasFirebaseDelegate_ && !step["token"].is_null();
    if (isToken) return call("didReceiveRegistrationToken", step);
    if (verb == "present" && hasNotificationDelegate_) return call("willPresent", step);
    if (verb == "respond" && hasNotificationDelegate_) return call("didReceive", step);
    if (verb == "openURL") return call("handleURL", {{"url", step["url"]}, {"source", "host"}});
    return {};
  }

  bool hasNotificationDelegate_;
  bool hasFirebaseDelegate_;
};

Json automatically(Json scenario) { return scenario; }

Json byHand(Json scenario) {
  ByHand host(scenario["host"]);
  Json steps = Json::array();
  for (const Json& each : scenario["steps"]) {
    for (Json& one : host.steps(each)) steps.push_back(std::move(one));
  }
  scenario["steps"] = std::move(steps);
  scenario["core"] = {{"config", {{"autoSwizzlingEnabled", false}}}};
  return scenario;
}

Json watching(Json scenario) {
  Json& steps = scenario["steps"];
  steps.insert(steps.begin(), call("setDelegateDiscovery", {{"value", "continuous"}}));
  return scenario;
}

// One column of the table each. The first is what the others are held to.
struct Integration {
  const char* name;
  Json (*of)(Json scenario);
};
constexpr std::array integrations{
    Integration{"automatic", &automatically},
    Integration{"by hand", &byHand},
    Integration{"watching", &watching},
};

// What counts is what leaves the module: for the core, for its storage, for the host, and as a
// link.
const char* subjectOf(const Json& entry) {
  static const std::map<std::string, const char*> subjects{{"event", "events"},
                                                           {"storage", "storage"},
                                                           {"core", "core"},
                                                           {"delegate", "delegate"},
                                                           {"urlDelegate", "links"}};
  const auto found = subjects.find(entry.at("kind").get<std::string>());
  if (found != subjects.end()) return found->second;
  return entry.at("kind") == "system" && entry.at("operation") == "openURL" ? "links" : nullptr;
}

constexpr std::array columns{"events", "storage", "core", "delegate", "links"};

std::vector<Json> outcomeOf(const Story& story, const Integration& integration) {
  const sim::Scenario scenario =
      sim::readScenario(integration.of(story.scenario).dump(), story.sentence);
  std::vector<Json> outcome;
  const auto death = sim::playInProcess(scenario, [&](const Json& entry) {
    EXPECT_NE(entry.at("kind"), "problem") << entry;
    if (subjectOf(entry) != nullptr) outcome.push_back(entry);
  });
  EXPECT_FALSE(death) << *death;
  return outcome;
}

class EquivalenceTest : public testing::TestWithParam<Story> {};

TEST_P(EquivalenceTest, OfEveryIntegration) {
  const std::vector<Json> expected = outcomeOf(GetParam(), integrations.front());
  EXPECT_FALSE(expected.empty());
  for (const Integration& integration : integrations) {
    EXPECT_EQ(outcomeOf(GetParam(), integration), expected) << integration.name;
  }
}

INSTANTIATE_TEST_SUITE_P(Story, EquivalenceTest, testing::ValuesIn(stories()), test::rowName);

std::string contentsOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string rowOf(const Story& story) {
  const std::vector<Json> expected = outcomeOf(story, integrations.front());
  std::string row = "| " + story.sentence + " |";
  for (const std::string_view column : columns) {
    row += " " +
           std::to_string(
               std::count_if(expected.begin(), expected.end(),
                             [&](const Json& entry) { return subjectOf(entry) == column; })) +
           " |";
  }
  for (std::size_t index = 1; index < integrations.size(); ++index) {
    row += outcomeOf(story, integrations[index]) == expected ? " equal |" : " **differs** |";
  }
  return row + "\n";
}

std::string table() {
  std::string head = "| story |";
  std::string line = "|---|";
  for (const char* const column : columns) {
    head.append(" ").append(column).append(" |");
    line += "---|";
  }
  for (std::size_t index = 1; index < integrations.size(); ++index) {
    head.append(" ").append(integrations[index].name).append(" |");
    line += "---|";
  }
  std::string text = head + "\n" + line + "\n";
  for (const Story& story : stories()) text += rowOf(story);
  return text;
}

TEST(EquivalencePageTest, HoldsTheTableOfTheSuite) {
  const std::string file = ZIBSIM_EQUIVALENCE;
  const std::string present = contentsOf(file);
  const std::string start = "<!-- stories -->\n";
  const std::size_t from = present.find(start) + start.size();
  std::string wanted = present;
  wanted.replace(from, present.find("<!-- end -->", from) - from, table());
  // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread
  if (std::getenv("ZIB_WRITE_DOCUMENTATION") != nullptr) {
    std::ofstream(file, std::ios::binary) << wanted;
  } else {
    EXPECT_EQ(present, wanted);
  }
}

}  // namespace
