#include <cstdio>
#include <memory>

#include "ZibCoreBoundary/Zib.h"
#include "ZibMessaging/ZibMessaging.h"

namespace {

void start(zib::objc::id application) {
  const auto zibApplication = zib::Application::retained(application);
  ZibMessaging::shared().configure(zibApplication);
  ZibMessaging::shared().registerForPush(zibApplication);
}

class Core final : public Zib {
 public:
  [[nodiscard]] std::optional<ZibConfig> config() const override { return ZibConfig{}; }
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override {
    return "https://config.example/push.json";
  }
  void trackSelfDescribingEvent(std::string_view schema, const zib::ValueMap& data) override {
    std::printf("%.*s: %zu values\n", static_cast<int>(schema.size()), schema.data(), data.size());
  }
  void registerPushToken(std::string_view) override {}
};

}  // namespace

void startInCpp(zib::objc::id application);
void startInCpp(zib::objc::id application) {
  // ZibLogger and ZibStorage are installed in the same way.
  Zib::install(std::make_unique<Core>());
  start(application);
}
