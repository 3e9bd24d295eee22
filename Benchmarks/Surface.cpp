// What the module's callbacks cost through its C surface, counted by callgrind: one file of counts
// and one line for each case.

#include <valgrind/callgrind.h>

#include <cstdint>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "Benchmarks/Device.h"
#include "Benchmarks/Inputs.h"
#include "ZibC/zib.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::BOOL;

constexpr int warmUpCalls = 100;
constexpr int calls = 100;

struct Case {
  std::string name;
  std::function<void()> call;
};

// A core that reads the first byte of what it is given, and nothing else.
std::uint64_t consumed = 0;

void consume(zib_text text) {
  if (text.size > 0) consumed += static_cast<unsigned char>(*text.bytes);
}

void installCore() {
  zib_core core{};
  core.size = sizeof core;
  core.config = [](void*, zib_config* config) {
    config->auto_swizzling_enabled = true;
    return true;
  };
  core.log = [](void*, zib_text line) { consume(line); };
  core.error = [](void*, zib_text line, const zib_error*) { consume(line); };
  core.track_self_describing_event = [](void*, zib_text schema, zib_object) { consume(schema); };
  core.register_push_token = [](void*, zib_text token) { consume(token); };
  core.save_fcm_token = [](void*, zib_text token) { consume(token); };
  zib_core_install(&core);
}

// A callback as the system makes it.
template <class Result, class... Arguments>
Case callback(std::string name, zib::Selector method, Arguments... arguments) {
  return {std::move(name), [method, arguments...] {
            const auto rawOf = [](const auto& argument) {
              if constexpr (std::is_same_v<std::decay_t<decltype(argument)>, Object>) {
                return argument.raw();
              } else {
                return argument;
              }
            };
            send<Result>(bench::hosts().intercepted.raw(), method, rawOf(arguments)...);
            bench::drainMainQueue();
          }};
}

Case openURL(std::string name, std::string_view text) {
  return callback<BOOL>(
      std::move(name), selector<"application:openURL:options:">(), bench::application(),
      Object::retained(zib::URL::parse(text).value().native()), zib::objectFrom(zib::ValueMap()));
}

Case payload(const Object& userInfo) {
  return {"payload", [userInfo] {
            zib_object_release(zib_payload_builder_create_notification_payload(
                userInfo.raw(), zib_text_of("notification-clicked")));
          }};
}

std::vector<Case> cases() {
  const Object userInfo = bench::payloadOf(12);
  const Object notification = bench::makeNotification(userInfo);
  const Object response =
      bench::makeResponse(notification, "com.apple.UNNotificationDefaultActionIdentifier");
  return {
      callback<void>("device token",
                     selector<"application:didRegisterForRemoteNotificationsWithDeviceToken:">(),
                     bench::application(), zib::makeData(bench::deviceToken())),
      callback<void>("FCM token", selector<"messaging:didReceiveRegistrationToken:">(),
                     bench::messaging(), zib::makeString(bench::fcmToken)),
      openURL("url", "myapp://offers/autumn"),
      openURL("url with 3 campaign parameters", bench::campaignURL(3)),
      callback<void>("present 12 keys",
                     selector<"userNotificationCenter:willPresentNotification:"
                              "withCompletionHandler:">(),
                     bench::center(), notification, bench::presentationCompletion()),
      callback<void>("respond 12 keys",
                     selector<"userNotificationCenter:didReceiveNotificationResponse:"
                              "withCompletionHandler:">(),
                     bench::center(), response, bench::responseCompletion()),
      payload(userInfo),
  };
}

void repeat(const std::function<void()>& call, int times) {
  const zib::AutoreleasePool pool;
  for (int i = 0; i < times; ++i) call();
}

void count(const Case& measured) {
  repeat(measured.call, warmUpCalls);
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  repeat(measured.call, calls);
  CALLGRIND_DUMP_STATS_AT(measured.name.c_str());
  CALLGRIND_STOP_INSTRUMENTATION;
  std::cout << measured.name << '\t' << calls << '\n';
}

}  // namespace

int main() {
  bench::setUpDevice();
  installCore();
  const zib::AutoreleasePool pool;
  bench::setDelegate(bench::hosts().intercepted);
  zib_messaging_configure(bench::application());
  bench::drainMainQueue();
  for (const Case& each : cases()) count(each);
  return consumed == 0 ? 1 : 0;
}
