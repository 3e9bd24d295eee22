#include "Device/Device.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using sim::Json;
using sim::Timeline;
using zib::Block;
using zib::Object;
using zib::selector;
using zib::send;
using zib::Value;
using zib::ValueMap;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::UInteger;

// One line for what the system was asked or told: its name, then the rest as it was recorded.
void print(const Json& entry) {
  const std::string operation = entry.value("operation", "");
  Json details = entry;
  for (const char* known : {"t", "thread", "kind", "operation"}) details.erase(known);
  const std::string line = "system | " + operation + (details.empty() ? "" : " " + details.dump());
  std::puts(line.c_str());
}

void record(const char* operation, Json details = Json::object()) {
  details["operation"] = operation;
  Timeline::shared().add("system", details);
}

// Calls the delegate as the system does: only if it responds.
template <class Result, class... Arguments>
Result tell(id delegate, zib::Selector method, Arguments... arguments) {
  if (delegate == nullptr || !zib::respondsTo(delegate, method)) return Result();
  return send<Result>(delegate, method, arguments...);
}

// What the main queue holds after a callback runs in turns of its own.
void runMainQueue() { sim::Scheduler::shared().drain(); }

}  // namespace

void launchDevice() {
  sim::installFoundation();
  sim::setMainBundlePath("/Applications/Example.app");
  sim::setSystemVersion(17, 0);
  sim::uikit::install(sim::uikit::ApplicationPresence::present, true);
  sim::usernotifications::install(sim::usernotifications::Answer{});
  Timeline::shared().setSink(&print);
}

id deviceApplication() { return sim::uikit::application(); }

void deliverDeviceToken() {
  constexpr std::array<std::uint8_t, 8> token{0x8f, 0x3a, 0x6c, 0x01, 0x19, 0xd2, 0xe4, 0x7b};
  tell<void>(sim::uikit::appDelegate(),
             selector<"application:didRegisterForRemoteNotificationsWithDeviceToken:">(),
             deviceApplication(), zib::makeData(token).raw());
  runMainQueue();
}

void deliverRegistrationFailure() {
  constexpr int noValidEntitlement = 3000;
  const zib::Error error{.domain = "NSCocoaErrorDomain",
                         .code = noValidEntitlement,
                         .description = "no valid entitlement",
                         .native = {}};
  tell<void>(sim::uikit::appDelegate(),
             selector<"application:didFailToRegisterForRemoteNotificationsWithError:">(),
             deviceApplication(), error.nativeError().raw());
  runMainQueue();
}

void presentNotification(id userInfo) {
  const auto completion = Block<void(UInteger)>::from([](UInteger options) {
    record("presents the notification", {{"options", options}});
  });
  tell<void>(
      sim::usernotifications::delegate(),
      selector<"userNotificationCenter:willPresentNotification:withCompletionHandler:">(),
      sim::usernotifications::center(),
      sim::usernotifications::makeNotification(*zib::valueFrom(userInfo).get<ValueMap>()).raw(),
      completion.raw());
  runMainQueue();
}

void tapNotification(id userInfo) {
  const auto completion = Block<void()>::from([] { record("response completed"); });
  tell<void>(
      sim::usernotifications::delegate(),
      selector<"userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:">(),
      sim::usernotifications::center(),
      sim::usernotifications::makeResponse(*zib::valueFrom(userInfo).get<ValueMap>(),
                                           "com.apple.UNNotificationDefaultActionIdentifier")
          .raw(),
      completion.raw());
  runMainQueue();
}

void openURL(const char* url) {
  const auto opened = zib::URL::parse(url);
  const Object options = zib::objectFrom(ValueMap());
  const auto isHandled =
      tell<BOOL>(sim::uikit::appDelegate(), selector<"application:openURL:options:">(),
                 deviceApplication(), opened->native(), options.raw());
  record("URL delivered", {{"handled", isHandled != 0}});
  runMainQueue();
}

void liveThroughADay() {
  const zib::AutoreleasePool pool;  // a host in C has none
  const Object sale =
      zib::objectFrom(ValueMap{{"aps", ValueMap{{"alert", "Autumn sale: 20% off until Sunday"}}},
                               {"pn_campaign_id", "autumn-2026"},
                               {"link", "https://shop.example/sale"}});
  runMainQueue();
  // The token takes a while, in which what was put off until the app has settled is done too.
  constexpr sim::Nanoseconds twoSeconds = 2'000'000'000;
  sim::Scheduler::shared().advanceTo(twoSeconds);
  deliverDeviceToken();
  presentNotification(sale.raw());
  tapNotification(sale.raw());
  openURL("https://shop.example/?utm_source=newsletter");
  deliverRegistrationFailure();
}
