// What no host, payload or order of events may change: the app goes on, each callback of the system
// is completed once, each that is intercepted counted once, and the module comes before the host.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "Simulator/Scenario/PlayInProcess.h"
#include "Simulator/Scenario/Reader.h"

namespace {

using sim::Json;

constexpr const char* network = R"({"config.example": {
  "/on": {"json": {"ios_config_toggle": true, "ios_private_key_url": "https://config.example/plist"}},
  "/off": {"json": {"ios_config_toggle": false}},
  "/lost": {"json": {"ios_config_toggle": 1, "ios_private_key_url": "https://config.example/cut"}},
  "/text": {"text": "no JSON"}, "/hang": {"fault": "hang"}, "/cut": {"text": "a", "fault": "truncate"},
  "/plist": {"text": "{key = value;}"}}})";

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  Json scenario() {
    const bool hasAppDelegate = chance(0.9);
    Json host = {{"appDelegate", hasAppDelegate ? delegate() : Json()}};
    if (chance(0.7)) host["notificationDelegate"] = delegateOrNull();
    for (; chance(0.4); ++scenes_) host["scenes"].push_back(scene());
    if (chance(0.7)) host["firebase"] = firebase();
    if (chance(0.4)) host["urlDelegate"] = chance(0.5);
    if (chance(0.3)) host["messagingDelegate"] = oneOf({true, false, "released"});
    Json steps = Json::array();
    for (int count = number(1, 25); count > 0; --count) steps.push_back(step());
    return {{"device", device()},
            {"core", {{"config", config()}, {"pushConfigEndpoint", endpoint()}}},
            {"host", host},
            {"network", Json::parse(network)},
            {"steps", steps}};
  }

 private:
  bool chance(double probability) { return std::bernoulli_distribution(probability)(random_); }
  int number(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
  Json oneOf(const Json& choices) {
    return choices[static_cast<std::size_t>(number(0, static_cast<int>(choices.size()) - 1))];
  }

  Json config() { return chance(0.6) ? Json() : Json{{"autoSwizzlingEnabled", chance(0.6)}}; }

  Json endpoint() {
    return oneOf({nullptr, "", "no URL", "https://config.example/on", "https://config.example/off",
                  "https://config.example/lost", "https://config.example/text",
                  "https://config.example/hang", "https://elsewhere.example/"});
  }

  Json device() {
    return {{"osVersion", oneOf({"13.0", "14.0", "26.1"})},
            {"bundlePath", chance(0.05) ? "/Applications/Share.appex" : "/Applications/App.app"},
            {"application",
             chance(0.8) ? Json("present") : oneOf({"noClass", "noInstance", "noOpenURL"})},
            {"authorization", {{"granted", chance(0.7)}}},
            {"documents", oneOf({"writable", "readOnly", "missing"})}};
  }

  Json someOf(const Json& choices) {
    Json chosen = Json::array();
    for (const Json& choice : choices) {
      if (chance(0.5)) chosen.push_back(choice);
    }
    return chosen;
  }

  Json newClass() {
    return {{"class", "Host" + std::to_string(classes_.size())},
            {"implements", someOf({"didRegister", "didFail", "openURL", "openURLContexts",
                                   "willPresent", "didReceive", "token"})},
            {"completes", chance(0.97)},
            {"options", number(0, 31)}};
  }

  // Of a class that stands by itself, on top of another, or is somebody else's too.
  Json delegate() {
    if (!classes_.empty() && chance(0.4)) return oneOf(classes_);
    Json described = newClass();
    if (!classes_.empty() && chance(0.5)) described["superclass"] = oneOf(classes_);
    classes_.push_back(described);
    return described;
  }

  Json delegateOrNull() { return chance(0.2) ? Json() : delegate(); }

  Json scene() { return {{"window", chance(0.9)}, {"delegate", delegateOrNull()}}; }

  Json firebase() {
    Json pieces = {{"classMethod", chance(0.9)},
                   {"instance", chance(0.9)},
                   {"delegateProperty", chance(0.9)},
                   {"settable", chance(0.9)}};
    if (chance(0.5)) pieces["delegate"] = delegateOrNull();
    return pieces;
  }

  Json userInfo() {
    Json info = Json::object();
    for (int count = number(0, 5); count > 0; --count) {
      const Json key = oneOf({"url", "link", "click_url", "pn_type", "_id", "club", "aps", ""});
      info[key.get<std::string>()] = oneOf({nullptr,
                                            true,
                                            -1,
                                            1.5,
                                            "",
                                            "NA",
                                            "PUSH-NOTIFICATION-SEND-TEST",
                                            "no URL",
                                            "https://example.com/?utm_a=1",
                                            Json::array(),
                                            {{"url", "https://example.com"}}});
    }
    return info;
  }

  Json step() {
    Json step = stepOf(oneOf({"configure",
                              "configure",
                              "registerForPush",
                              "configurePush",
                              "deviceToken",
                              "registrationFailure",
                              "fcmToken",
                              "present",
                              "present",
                              "respond",
                              "respond",
                              "openURL",
                              "sceneOpenURLs",
                              "setNotificationDelegate",
                              "connectScene",
                              "setFirebase",
                              "releaseMessagingDelegate",
                              "setConfig",
                              "advance",
                              "state"}));
    if (step.at("do") != "advance" && chance(0.2)) step["thread"] = "other";
    return step;
  }

  Json stepOf(const Json& verb) {
    Json step = {{"do", verb}};
    if (verb == "configurePush") step.update({{"endpoint", endpoint()}, {"firebase", firebase()}});
    if (verb == "deviceToken") step["hex"] = oneOf({"", "00", "0001ab"});
    if (verb == "registrationFailure")
      step["error"] = {{"domain", "d"}, {"code", 1}, {"description", ""}};
    if (verb == "fcmToken") step["token"] = oneOf({nullptr, "", "token"});
    if (verb == "present" || verb == "respond") step["userInfo"] = userInfo();
    if (verb == "openURL") step["url"] = oneOf({"app:x", "https://example.com/?utm_a=%00"});
    if (verb == "sceneOpenURLs" && scenes_ == 0) return {{"do", "state"}};
    if (verb == "sceneOpenURLs") {
      step.update({{"scene", number(0, scenes_ - 1)}, {"urls", someOf({"app:x", "app:y"})}});
    }
    if (verb == "setNotificationDelegate") step["delegate"] = delegateOrNull();
    if (verb == "connectScene") step.update(scene());
    if (verb == "connectScene") ++scenes_;
    if (verb == "setFirebase") step.update(firebase());
    if (verb == "setConfig") step["config"] = config();
    if (verb == "advance") step["seconds"] = oneOf({0, 0.1, 0.5, 1, 60});
    return step;
  }

  std::mt19937 random_;
  Json classes_ = Json::array();
  int scenes_ = 0;
};

class RandomScenario : public testing::TestWithParam<unsigned> {
 protected:
  // The entries of one step, its main-queue work included.
  using Entries = std::vector<Json>;

  static std::size_t count(const Entries& entries, const Json& wanted) {
    return static_cast<std::size_t>(
        std::count_if(entries.begin(), entries.end(), [&](const Json& entry) {
          return std::all_of(wanted.items().begin(), wanted.items().end(), [&](const auto& item) {
            return entry.contains(item.key()) && entry.at(item.key()) == item.value();
          });
        }));
  }

  struct Notification {
    const char* interceptedLine;
    const char* completion;
    const char* event;
  };
  static constexpr Notification presented{"🔔 [INTERCEPTED] willPresent notification", "willPresent",
                                          "notification-delivered"};
  static constexpr Notification tapped{"👆 [INTERCEPTED] didReceive notification response",
                                       "didReceive", "notification-clicked"};

  static void checkNotification(const Entries& step, const Json& userInfo,
                                const Notification& notification) {
    const std::size_t intercepted = count(step, {{"message", notification.interceptedLine}});
    const bool isTest = userInfo.value("pn_type", Json()) == "PUSH-NOTIFICATION-SEND-TEST";
    EXPECT_LE(intercepted, 1U);
    EXPECT_EQ(count(step, {{"kind", "event"}}), isTest ? 0 : intercepted);
    EXPECT_LE(count(step, {{"kind", "completion"}, {"of", notification.completion}}), 1U);
    bool hostWasTold = false;
    for (const Json& entry : step) {
      hostWasTold = hostWasTold || entry.at("kind") == "host";
      if (entry.at("kind") != "event") continue;
      EXPECT_EQ(entry.at("data").at("event_type"), notification.event);
      EXPECT_FALSE(hostWasTold);
    }
  }

  static void check(const Entries& step, const Json& asked) {
    const std::string verb = asked.at("do");
    if (verb == "present") checkNotification(step, asked.at("userInfo"), presented);
    if (verb == "respond") checkNotification(step, asked.at("userInfo"), tapped);
    if (verb == "configurePush") {
      EXPECT_EQ(count(step, {{"kind", "completion"}, {"of", "configurePush"}}), 1U);
    }
    EXPECT_LE(count(step, {{"kind", "host"}}), 1U);
    EXPECT_EQ(count(step, {{"operation", "saveFCMToken"}}),
              count(step, {{"operation", "registerPushToken"}}));
  }
};

INSTANTIATE_TEST_SUITE_P(BySeed, RandomScenario, testing::Range(0U, 20U));

TEST_P(RandomScenario, CompletesEachCallbackOnceAndComesBeforeTheHost) {
  constexpr unsigned scenariosOfOneSeed = 5;
  for (unsigned each = 0; each < scenariosOfOneSeed; ++each) {
    const Json described = Generator(GetParam() * scenariosOfOneSeed + each).scenario();
    SCOPED_TRACE(described.dump());
    std::vector<Entries> steps;
    const auto death =
        sim::playInProcess(sim::readScenario(described.dump(), ""), [&](const Json& entry) {
          if (entry.at("kind") == "step") steps.emplace_back();
          steps.back().push_back(entry);
        });
    ASSERT_EQ(death, std::nullopt);
    ASSERT_EQ(steps.size(), described.at("steps").size());
    const bool everyHostCompletes =
        described.dump().find(R"("completes":false)") == std::string::npos;
    for (std::size_t index = 0; index < steps.size(); ++index) {
      check(steps[index], described.at("steps")[index]);
      EXPECT_EQ(count(steps[index], {{"code", "completionCalledTwice"}}), 0U);
      EXPECT_TRUE(!everyHostCompletes ||
                  count(steps[index], {{"code", "completionNeverCalled"}}) == 0);
    }
  }
}

}  // namespace
