// A host that links the static library and nothing of the simulated device: what of dispatch the
// module asks for is here. It uses the module and prints what comes of it.

#include <cstdint>
#include <cstdio>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibMessaging/ZibPushError.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

struct dispatch_queue_s {};

namespace {

std::deque<std::function<void()>>& queue() {
  static std::deque<std::function<void()>> queue;
  return queue;
}

}  // namespace

extern "C" {

dispatch_queue_s _dispatch_main_q;

std::uint64_t dispatch_time(std::uint64_t when, std::int64_t nanoseconds) {
  return when + static_cast<std::uint64_t>(nanoseconds);
}
void dispatch_async_f(dispatch_queue_s*, void* context, void (*work)(void*)) {
  queue().emplace_back([=] { work(context); });
}
void dispatch_sync_f(dispatch_queue_s*, void* context, void (*work)(void*)) { work(context); }
void dispatch_after_f(std::uint64_t, dispatch_queue_s* main, void* context, void (*work)(void*)) {
  dispatch_async_f(main, context, work);
}
}

namespace {

void print(std::string_view kind, std::string_view text) {
  std::printf("%.*s: %.*s\n", static_cast<int>(kind.size()), kind.data(),
              static_cast<int>(text.size()), text.data());
}

class Logger final : public ZibLogger {
 public:
  void log(std::string_view message) override { print("log", message); }
  void error(std::string_view message, const std::optional<zib::Error>& error) override {
    print("error", std::string(message) + (error ? " - " + error->description : ""));
  }
};

class Core final : public Zib {
 public:
  [[nodiscard]] std::optional<ZibConfig> config() const override { return std::nullopt; }
  void trackSelfDescribingEvent(std::string_view schema, const zib::ValueMap& data) override {
    print("event", schema);
    for (const zib::Member& member : data) {
      const auto* text = member.value.get<std::string>();
      print("  " + member.key, text == nullptr ? "null" : *text);
    }
  }
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override { return ""; }
  void registerPushToken(std::string_view token) override { print("token", token); }
};

class Delegate final : public ZibMessagingDelegate {
 public:
  void zibMessagingDidReceiveToken(ZibMessaging&, std::string_view token) override {
    print("delegate", token);
    throw 1;
  }
};

}  // namespace

int main() {
  const zib::AutoreleasePool pool;
  ZibLogger::install(std::make_unique<Logger>());
  Zib::install(std::make_unique<Core>());
  const auto delegate = std::make_shared<Delegate>();
  const auto application = zib::Application::retained(nullptr);
  ZibMessaging& messaging = ZibMessaging::shared();
  messaging.setDelegate(delegate);
  messaging.configure(application);
  messaging.setFCMToken("early");
  messaging.setPushToken(zib::Bytes{0x01, 0xAB});
  messaging.setFCMToken("token");
  messaging.trackNotificationOpened(zib::Dictionary::from({{"club", "a club"}}));
  messaging.didFailToRegisterForRemoteNotifications(zib::errorFrom(ZibPushError::noData));
  ZibDeepLinkHandler::shared().handleNotificationURL(zib::Dictionary::from({{"url", "app://x"}}));
  ZibPushConfig::shared().configurePush(application, std::nullopt, {}, [](bool started) {
    print("completion", started ? "true" : "false");
  });
  while (!queue().empty()) {
    const auto work = std::move(queue().front());
    queue().pop_front();
    work();
  }
}
