#include "Benchmarks/Cases.h"

#include <nlohmann/json.hpp>

#include "Benchmarks/Device.h"
#include "Benchmarks/Floor.h"
#include "Benchmarks/Inputs.h"
#include "Benchmarks/Sink.h"
#include "ZibMessaging/Private/RemotePushConfig.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/JSON.h"
#include "ZibPlatform/Foundation/PropertyList.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace bench {
namespace {

using zib::Object;
using zib::selector;
using zib::send;
using zib::ValueMap;
using zib::objc::BOOL;
using zib::objc::id;

constexpr const char* deviceTokenCase = "device token";

constexpr double callbackTarget = 1.15;
constexpr double responseTarget = 1.5;
constexpr double payloadTarget = 1.2;

Object text(std::string_view utf8) { return zib::makeString(utf8); }

Object url(std::string_view text) {
  return Object::retained(zib::URL::parse(text).value().native());
}

// A callback as the system makes it, to the host of one side.
template <class Result, class... Arguments>
std::function<void()> callback(const Object& host, zib::Selector method, Arguments... arguments) {
  return [host, method, arguments...] {
    const auto rawOf = [](const auto& argument) {
      if constexpr (std::is_same_v<std::decay_t<decltype(argument)>, Object>) {
        return argument.raw();
      } else {
        return argument;
      }
    };
    send<Result>(host.raw(), method, rawOf(arguments)...);
  };
}

template <class Result, class... Arguments>
Case callbackCase(std::string name, double target, zib::Selector method, Arguments... arguments) {
  return {.name = std::move(name),
          .floor = callback<Result>(hosts().floor, method, arguments...),
          .ours = callback<Result>(hosts().intercepted, method, arguments...),
          .beside = callback<Result>(hosts().bare, method, arguments...),
          .besideName = "the host's bare method",
          .target = target};
}

std::function<void()> drained(const std::function<void()>& call) {
  return [call] {
    call();
    drainMainQueue();
  };
}

Case presentCase(const std::string& payload, const Object& userInfo) {
  return callbackCase<void>(
      "present " + payload, callbackTarget,
      selector<"userNotificationCenter:willPresentNotification:withCompletionHandler:">(), center(),
      makeNotification(userInfo), presentationCompletion());
}

Case respondCase(const std::string& payload, const Object& userInfo) {
  Case result = callbackCase<void>(
      "respond " + payload, responseTarget,
      selector<"userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:">(),
      center(),
      makeResponse(makeNotification(userInfo), "com.apple.UNNotificationDefaultActionIdentifier"),
      responseCompletion());
  for (auto* call : {&result.floor, &result.ours, &result.beside}) *call = drained(*call);
  return result;
}

nlohmann::json jsonEventOf(const zib::Dictionary& userInfo, std::string_view eventType) {
  const auto text = [&](const zib::ConstantString& key) {
    const zib::StringRef found = userInfo.text(key);
    return found ? nlohmann::json(found.utf8()) : nlohmann::json();
  };
  return {{"pn_campaign_id", text(zib::constantString<"pn_campaign_id">)},
          {"ma_campaign_id", text(zib::constantString<"ma_campaign_id">)},
          {"node_id", text(zib::constantString<"node_id">)},
          {"ma_channel", "push"},
          {"user_id", nullptr},
          {"event_type", eventType},
          {"club", text(zib::constantString<"club">)},
          {"environment", text(zib::constantString<"environment">)},
          {"customer_key", text(zib::constantString<"customer_key">)},
          {"reasons", nullptr},
          {"campaign_source", "PUSH-NOTIFICATION"},
          {"platform_name", "ios"},
          {"click_url", text(zib::constantString<"click_url">)},
          {"domain_userid", text(zib::constantString<"_id">)}};
}

void consumeJSON(const nlohmann::json& event) {
  for (const auto& [key, value] : event.items()) {
    consume(key);
    if (value.is_string()) consume(value.get_ref<const std::string&>());
  }
}

Case payloadCase() {
  constexpr std::string_view clicked = "notification-clicked";
  const auto userInfo = zib::Dictionary::retained(payloadOf(12).raw());
  const id native = userInfo.native();
  return {.name = "payload",
          .floor = [=] { consume(floor::eventOf(native, clicked)); },
          .ours = [=] { consume(ZibPayloadBuilder::createNotificationPayload(userInfo, clicked)); },
          .beside = [=] { consumeJSON(jsonEventOf(userInfo, clicked)); },
          .besideName = "an nlohmann::json object",
          .target = payloadTarget};
}

// The host takes the link, so that the case ends there.
Case linkCase(const std::string& name, const ValueMap& links) {
  ValueMap withLinks;
  for (const zib::Member& member : usualPayload()) {
    if (member.key != "link" && member.key != "click_url") {
      withLinks.append(member.key, member.value);
    }
  }
  for (const zib::Member& member : links) withLinks.append(member.key, member.value);
  const auto userInfo = zib::Dictionary::from(withLinks);
  const id native = userInfo.native();
  return {.name = "link " + name,
          .floor = [=] { floor::handleNotificationURL(native); },
          .ours = [=] { ZibDeepLinkHandler::shared().handleNotificationURL(userInfo); },
          .target = callbackTarget,
          .setUp =
              [] {
                floor::setURLDelegate([](id) { return true; });
                ZibDeepLinkHandler::shared().setURLDelegate([](const zib::URL&) { return true; });
              },
          .tearDown =
              [] {
                floor::setURLDelegate({});
                ZibDeepLinkHandler::shared().setURLDelegate({});
              }};
}

zib::URLReply replyOf(std::string_view body) {
  constexpr long statusOK = 200;
  return {{reinterpret_cast<const std::uint8_t*>(body.data()), body.size()}, statusOK, {}};
}

constexpr std::string_view configurationDocument =
    R"({"ios_config_toggle": true,
        "ios_private_key_url": "https://config.example/app/GoogleService-Info.plist",
        "android_config_toggle": false, "version": 3, "updated": "2024-11-20T09:30:00Z"})";

constexpr std::string_view propertyList =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
  <key>CLIENT_ID</key><string>1234-abcd.apps.example</string>
  <key>API_KEY</key><string>AIzaSyExampleExampleExampleExample</string>
  <key>GCM_SENDER_ID</key><string>123456789012</string>
  <key>BUNDLE_ID</key><string>com.example.app</string>
  <key>PROJECT_ID</key><string>example</string>
  <key>IS_ADS_ENABLED</key><false/>
  <key>IS_GCM_ENABLED</key><true/>
  <key>GOOGLE_APP_ID</key><string>1:123456789012:ios:0123456789abcdef</string>
</dict>
</plist>
)";

Case configurationCase() {
  const auto reply = replyOf(configurationDocument);
  return {.name = "configuration document",
          .floor = [=] { zib::parseJSON(reply.body); },
          .ours = [=] { zib::readPushConfig(reply); }};
}

Case propertyListCase() {
  const auto reply = replyOf(propertyList);
  return {.name = "property list",
          .floor = [=] { zib::parsePropertyList(reply.body); },
          .ours = [=] { zib::readFirebasePlist(reply); }};
}

std::vector<Case> makeCases() {
  const auto openURL = selector<"application:openURL:options:">();
  const Object noOptions = zib::objectFrom(ValueMap());
  const auto urlCase = [&](const std::string& name, const std::string& opened) {
    return callbackCase<BOOL>(name, callbackTarget, openURL, application(), url(opened), noOptions);
  };
  constexpr std::size_t fourKB = 4096;
  return {
      urlCase("url", "myapp://offers/autumn"),
      urlCase("url with a query", "https://shop.example/offers/autumn?item=42&from=mail"),
      urlCase("url with 3 campaign parameters", campaignURL(3)),
      presentCase("12 keys", payloadOf(12)),
      presentCase("25 keys", payloadOf(25)),
      presentCase("4 KB", payloadOf(25, fourKB)),
      respondCase("12 keys", payloadOf(12)),
      respondCase("25 keys", payloadOf(25)),
      respondCase("4 KB", payloadOf(25, fourKB)),
      callbackCase<void>(
          deviceTokenCase, callbackTarget,
          selector<"application:didRegisterForRemoteNotificationsWithDeviceToken:">(),
          application(), zib::makeData(deviceToken())),
      callbackCase<void>("FCM token", callbackTarget,
                         selector<"messaging:didReceiveRegistrationToken:">(), messaging(),
                         text(fcmToken)),
      payloadCase(),
      linkCase("at the first key", {{"url", "https://shop.example/offers/autumn"}}),
      linkCase("at the last key", {{"action_url", "https://shop.example/offers/autumn"}}),
      linkCase("none", {}),
      configurationCase(),
      propertyListCase(),
  };
}

}  // namespace

const std::vector<Case>& cases() {
  static const std::vector<Case> all = makeCases();
  return all;
}

void configureBoth() {
  static bool isDone = false;
  if (std::exchange(isDone, true)) return;
  setDelegate(hosts().intercepted);
  configureOurs();
  setDelegate(hosts().floor);
  configureFloor();
  drainMainQueue();
  for (const Case& each : cases()) {
    if (each.name != deviceTokenCase) continue;
    each.floor();
    each.ours();
  }
}

void configureFloor() { floor::configure(); }

void configureOurs() {
  ZibMessaging::shared().configure(zib::Application::retained(application()));
}

}  // namespace bench
