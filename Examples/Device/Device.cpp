#include "Device/Device.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

#include "Simulator/Device/Device.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using sim::Json;
using sim::Timeline;
using zib::Object;
using zib::ValueMap;
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

// What the main queue holds after a callback runs in turns of its own.
void runMainQueue() { sim::Device::settle(); }

ValueMap valuesOf(id userInfo) { return *zib::valueFrom(userInfo)->get<ValueMap>(); }

}  // namespace

void launchDevice() {
  static const zib::NeverDestroyed<sim::Device> device([] {
    sim::DeviceDescription description;
    description.bundlePath = "/Applications/Example.app";
    return sim::Device(description);
  });
  Timeline::shared().setSink(&print);
}

id deviceApplication() { return sim::uikit::application(); }

void deliverDeviceToken() {
  constexpr std::array<std::uint8_t, 8> token{0x8f, 0x3a, 0x6c, 0x01, 0x19, 0xd2, 0xe4, 0x7b};
  sim::uikit::deliverDeviceToken(token);
  runMainQueue();
}

void deliverRegistrationFailure() {
  constexpr int noValidEntitlement = 3000;
  sim::uikit::deliverRegistrationFailure(zib::Error{.domain = "NSCocoaErrorDomain",
                                                    .code = noValidEntitlement,
                                                    .description = "no valid entitlement",
                                                    .native = {}});
  runMainQueue();
}

void presentNotification(id userInfo) {
  sim::usernotifications::present(valuesOf(userInfo), [] {
    return sim::usernotifications::PresentationCompletion::from([](UInteger options) {
      record("presents the notification", {{"options", options}});
    });
  });
  runMainQueue();
}

void tapNotification(id userInfo) {
  sim::usernotifications::respond(valuesOf(userInfo), sim::usernotifications::defaultAction, [] {
    return sim::usernotifications::ResponseCompletion::from([] { record("response completed"); });
  });
  runMainQueue();
}

void openURL(const char* url) {
  const auto isHandled = sim::uikit::deliverURL(zib::URL::parse(url).value(), {});
  record("URL delivered", {{"handled", isHandled.value_or(false)}});
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
  constexpr double seconds = 2;
  sim::Device::advance(seconds);
  deliverDeviceToken();
  presentNotification(sale.raw());
  tapNotification(sale.raw());
  openURL("https://shop.example/?utm_source=newsletter");
  deliverRegistrationFailure();
}
