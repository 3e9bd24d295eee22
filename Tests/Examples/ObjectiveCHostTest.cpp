// A host whose delegates are real Objective-C, before and after the module was configured.

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Device/Device.h"
#include "RecordingHost.h"
#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Host/RecordingCore.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibC/zib.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using sim::Json;
using zib::Block;
using zib::Object;
using zib::selector;
using zib::send;
using zib::ValueMap;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::UInteger;
using Lines = std::vector<std::string>;

constexpr const char* didRegister = "application:didRegisterForRemoteNotificationsWithDeviceToken:";
constexpr const char* didFail = "application:didFailToRegisterForRemoteNotificationsWithError:";
constexpr const char* openURLMethod = "application:openURL:options:";
constexpr const char* willPresent =
    "userNotificationCenter:willPresentNotification:withCompletionHandler:";
constexpr const char* didReceive =
    "userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:";
constexpr std::array intercepted{didRegister, didFail, openURLMethod, willPresent, didReceive};
constexpr std::array others{"badges", "setBadges:", "description", "respondsToSelector:",
                            "userNotificationCenter:openSettingsForNotification:"};

struct HostCall {
  id receiver;
  std::string selector;
  id subject;
  id argument;
  friend bool operator==(const HostCall&, const HostCall&) = default;
};

void PrintTo(const HostCall& call, std::ostream* out) {
  *out << '[' << call.receiver << ' ' << call.selector << "] with " << call.subject << ", "
       << call.argument;
}

std::vector<HostCall>& hostCalls() {
  static std::vector<HostCall> calls;
  return calls;
}

// One line for each thing that happened, whoever did it: what the module logs and reports, what the
// host's methods record, and what the system is told.
std::optional<std::string> lineOf(const Json& entry) {
  const auto kind = entry.at("kind").get<std::string>();
  if (kind == "log") return "zib " + entry.at("message").get<std::string>();
  if (kind == "event") return "event " + entry.at("data").at("event_type").get<std::string>();
  if (kind == "host") return "host " + entry.at("selector").get<std::string>();
  if (kind != "system") return std::nullopt;
  std::string line = "system " + entry.at("operation").get<std::string>();
  if (entry.contains("options") && entry.at("options").is_number()) {
    line += ' ' + entry.at("options").dump();
  }
  return line;
}

class LaunchedDevice {
 public:
  LaunchedDevice() { launchDevice(); }

 private:
  zib::AutoreleasePool pool_;
};

class ObjectiveCHostTest : public testing::Test {
  // Before the platform's objects below.
  LaunchedDevice device_;

 protected:
  ObjectiveCHostTest() {
    sim::installRecordingCore();
    sim::Timeline::shared().setSink([this](const Json& entry) {
      if (auto line = lineOf(entry)) log_.push_back(*std::move(line));
    });
  }
  ~ObjectiveCHostTest() override {
    letTimePass();
    sim::Timeline::shared().setSink({});
  }

  // Until all is done that was put off.
  static void letTimePass() { sim::Scheduler::shared().advanceTo(sim::Nanoseconds{2'000'000'000}); }

  // The delegate of the application and of the notification centre.
  id install(const char* className) {
    delegate_ = Object::adopted(makeHostDelegate(className));
    sim::uikit::setAppDelegate(delegate_);
    sim::usernotifications::setDelegate(delegate_);
    return delegate_.raw();
  }

  void configure() {
    zib_messaging_configure(deviceApplication());
    log_.clear();
  }

  // What happened since the last time.
  Lines happened() { return std::exchange(log_, {}); }

  Object data = zib::makeData(zib::Bytes{1, 2, 3});
  Object error = zib::Error{"Host", 7, "no", {}}.nativeError();
  Object url = Object::retained(zib::URL::parse("https://shop.example/?utm_source=mail")->native());
  Object options = zib::objectFrom(ValueMap{{"source", "mail"}});
  Object notification =
      sim::usernotifications::makeNotification(ValueMap{{"pn_campaign_id", "autumn"}});
  Object response =
      sim::usernotifications::makeResponse(ValueMap{{"pn_campaign_id", "autumn"}}, "tap");

  void giveToken() const {
    send<void>(delegate_.raw(), zib::Selector(didRegister), deviceApplication(), data.raw());
  }
  void giveError() const {
    send<void>(delegate_.raw(), zib::Selector(didFail), deviceApplication(), error.raw());
  }
  [[nodiscard]] bool open() const {
    return send<BOOL>(delegate_.raw(), zib::Selector(openURLMethod), deviceApplication(), url.raw(),
                      options.raw()) != 0;
  }
  // The completions that came back are in the log.
  void present() {
    const auto completion = Block<void(UInteger)>::from(
        [this](UInteger chosen) { log_.push_back("completion " + std::to_string(chosen)); });
    send<void>(delegate_.raw(), zib::Selector(willPresent), sim::usernotifications::center(),
               notification.raw(), completion.raw());
  }
  void tap() {
    const auto completion = Block<void()>::from([this] { log_.emplace_back("completion"); });
    send<void>(delegate_.raw(), zib::Selector(didReceive), sim::usernotifications::center(),
               response.raw(), completion.raw());
  }

 private:
  Object delegate_;
  Lines log_;
};

std::vector<const void*> implementations(id delegate, auto selectors) {
  std::vector<const void*> result;
  for (const char* selector : selectors) result.push_back(implementationFor(delegate, selector));
  return result;
}

id exceptionOf(std::function<void()> work) {
  return exceptionThrownBy([](void* context) { (*static_cast<std::function<void()>*>(context))(); },
                           &work);
}

const Lines tokenLines{
    "zib 📲 [INTERCEPTED] didRegisterForRemoteNotifications",
    "zib 📱 APNS token registered: 010203...",
    "zib    ℹ️ APNS registered, waiting for fresh FCM token from Firebase...",
    std::string("host ") + didRegister};
const Lines errorLines{"zib ❌ [INTERCEPTED] didFailToRegisterForRemoteNotifications",
                       "zib Failed to register for push", std::string("host ") + didFail};
const Lines urlLines{
    "zib 🔗 [INTERCEPTED] application:open:options: https://shop.example/?utm_source=mail",
    "zib    📊 UTM parameters: [\"utm_source\": \"mail\"]", std::string("host ") + openURLMethod};
const Lines presentLines{"zib 🔔 [INTERCEPTED] willPresent notification",
                         "zib Notification received in foreground", "event notification-delivered",
                         std::string("host ") + willPresent};
const Lines tapLines{"zib 👆 [INTERCEPTED] didReceive notification response",
                     "zib Notification tapped with action: tap", "event notification-clicked",
                     std::string("host ") + didReceive};

Lines operator+(Lines lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

TEST_F(ObjectiveCHostTest, HostsMethodsKeepTheirReceiverSelectorAndArguments) {
  const id delegate = install("RecordingDelegate");
  configure();
  giveToken();
  giveError();
  EXPECT_TRUE(open());
  present();
  tap();
  const id center = sim::usernotifications::center();
  EXPECT_EQ(hostCalls(),
            (std::vector<HostCall>{{delegate, didRegister, deviceApplication(), data.raw()},
                                   {delegate, didFail, deviceApplication(), error.raw()},
                                   {delegate, openURLMethod, deviceApplication(), url.raw()},
                                   {delegate, willPresent, center, notification.raw()},
                                   {delegate, didReceive, center, response.raw()}}));
}

TEST_F(ObjectiveCHostTest, ModuleHandlesEachCallbackFirst) {
  install("RecordingDelegate");
  configure();
  giveToken();
  EXPECT_EQ(happened(), tokenLines);
  giveError();
  EXPECT_EQ(happened(), errorLines);
  static_cast<void>(open());
  EXPECT_EQ(happened(), urlLines);
  present();
  EXPECT_EQ(happened(), presentLines + Lines{"completion 9"});
  tap();
  EXPECT_EQ(happened(), tapLines + Lines{"completion"});
}

TEST_F(ObjectiveCHostTest, HostsAnswerIsTheAnswer) {
  install("RecordingDelegate");
  configure();
  EXPECT_TRUE(open());
  options = zib::objectFrom(ValueMap());
  EXPECT_FALSE(open());
}

TEST_F(ObjectiveCHostTest, CompletionKeptForLaterArrivesOnce) {
  install("LaterDelegate");
  configure();
  present();
  EXPECT_EQ(happened(), presentLines);
  sim::Scheduler::shared().drain();
  EXPECT_EQ(happened(), Lines{"completion 9"});
  tap();
  EXPECT_EQ(happened(), tapLines);
  sim::Scheduler::shared().drain();
  EXPECT_EQ(happened(), Lines{"completion"});
}

TEST_F(ObjectiveCHostTest, InheritedMethodRunsWithTheSubclassesObject) {
  const id delegate = install("InheritingDelegate");
  configure();
  giveToken();
  EXPECT_EQ(happened(), tokenLines);
  EXPECT_EQ(hostCalls(),
            (std::vector<HostCall>{{delegate, didRegister, deviceApplication(), data.raw()}}));
}

TEST_F(ObjectiveCHostTest, MethodThatCallsSuperReachesItAndIsHandledOnce) {
  const id delegate = install("SuperDelegate");
  configure();
  giveToken();
  EXPECT_EQ(happened(), tokenLines + Lines{std::string("host ") + didRegister});
  const HostCall call{delegate, didRegister, deviceApplication(), data.raw()};
  EXPECT_EQ(hostCalls(), (std::vector<HostCall>{call, call}));
  EXPECT_FALSE(open());
  EXPECT_EQ(happened(), urlLines + Lines{std::string("host ") + openURLMethod});
  present();
  EXPECT_EQ(happened(),
            (presentLines + Lines{std::string("host ") + willPresent, "completion 11"}));
  // The two that the class only inherits.
  giveError();
  EXPECT_EQ(happened(), errorLines);
  tap();
  EXPECT_EQ(happened(), tapLines + Lines{"completion"});
}

TEST_F(ObjectiveCHostTest, HostsExceptionReachesTheCallerUntouched) {
  install("ThrowingDelegate");
  configure();
  const std::array<std::pair<std::function<void()>, Lines>, 5> callbacks{
      {{[&] { giveToken(); }, tokenLines},
       {[&] { giveError(); }, errorLines},
       {[&] { static_cast<void>(open()); }, urlLines},
       {[&] { present(); }, presentLines},
       {[&] { tap(); }, tapLines}}};
  for (const auto& [callback, lines] : callbacks) {
    // Twice: an exception leaves nothing behind that the next callback would stumble over.
    for (int round = 0; round < 2; ++round) {
      const id exception = exceptionOf(callback);
      EXPECT_NE(exception, nullptr);
      EXPECT_EQ(exception, thrownException());
      EXPECT_EQ(happened(), lines);
    }
  }
}

TEST_F(ObjectiveCHostTest, DelegateObservedBeforeConfigureWorks) {
  const id delegate = install("RecordingDelegate");
  beginObservation(delegate);
  ASSERT_STRNE(hiddenClassNameOf(delegate), "RecordingDelegate");
  configure();
  giveToken();
  present();
  EXPECT_EQ(happened(), tokenLines + presentLines + Lines{"completion 9"});
  setBadges(delegate, 1);
  EXPECT_EQ(observedChanges(), 1);

  endObservation(delegate);
  EXPECT_STREQ(hiddenClassNameOf(delegate), "RecordingDelegate");
  giveToken();
  present();
  EXPECT_EQ(happened(), tokenLines + presentLines + Lines{"completion 9"});
  setBadges(delegate, 2);
  EXPECT_EQ(observedChanges(), 1);
}

TEST_F(ObjectiveCHostTest, DelegateObservedAfterConfigureWorks) {
  const id delegate = install("RecordingDelegate");
  configure();
  beginObservation(delegate);
  giveToken();
  tap();
  EXPECT_EQ(happened(), tokenLines + tapLines + Lines{"completion"});
  setBadges(delegate, 1);
  EXPECT_EQ(observedChanges(), 1);
  EXPECT_STREQ(classNameOf(delegate), "RecordingDelegate");
  endObservation(delegate);
}

TEST_F(ObjectiveCHostTest, ConfigureChangesTheFiveMethodsAndNoOther) {
  const id delegate = install("RecordingDelegate");
  const auto before = implementations(delegate, intercepted);
  const auto othersBefore = implementations(delegate, others);
  configure();
  const auto after = implementations(delegate, intercepted);
  for (std::size_t index = 0; index < before.size(); ++index) {
    EXPECT_NE(after[index], before[index]) << intercepted[index];
  }
  EXPECT_EQ(implementations(delegate, others), othersBefore);
}

TEST_F(ObjectiveCHostTest, WithoutConfigureTheHostIsUntouched) {
  const id delegate = install("RecordingDelegate");
  const auto before = implementations(delegate, intercepted);
  // Using the module otherwise is no integration.
  EXPECT_FALSE(zib_messaging_is_push_enabled());
  giveToken();
  giveError();
  EXPECT_TRUE(open());
  present();
  tap();
  sim::Scheduler::shared().drain();
  EXPECT_EQ(happened(),
            (Lines{std::string("host ") + didRegister, std::string("host ") + didFail,
                   std::string("host ") + openURLMethod, std::string("host ") + willPresent,
                   "completion 9", std::string("host ") + didReceive, "completion"}));
  EXPECT_EQ(implementations(delegate, intercepted), before);
}

TEST_F(ObjectiveCHostTest, IntegrationByHandLeavesTheHostUntouched) {
  sim::setCoreConfig(sim::CoreConfig{.autoSwizzlingEnabled = false});
  const id delegate = install("RecordingDelegate");
  const auto before = implementations(delegate, intercepted);
  configure();
  letTimePass();
  EXPECT_EQ(implementations(delegate, intercepted), before);
  present();
  EXPECT_EQ(happened(), (Lines{std::string("host ") + willPresent, "completion 9"}));
}

}  // namespace

void hostMethodCalled(id receiver, const char* selector, id subject, id argument) {
  hostCalls().push_back({receiver, selector, subject, argument});
  sim::Timeline::shared().add("host", {{"selector", selector}});
}
