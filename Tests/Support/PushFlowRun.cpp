// How a flow is begun: by the module's own C++, which programs that have another surface alone
// leave out.

#include "Simulator/Dispatch/Scheduler.h"
#include "Tests/Support/PushFlow.h"
#include "ZibMessaging/ZibPushConfig.h"

namespace test {
namespace {

using sim::Json;

double secondsNow() { return sim::inSeconds(sim::Scheduler::shared().now()); }

}  // namespace

void PushFlow::start(const std::string& endpoint) {
  ZibPushConfig::shared().configurePush(
      Device::application(), endpoint,
      [this](const zib::Dictionary& plist) {
        sim::Timeline::shared().add("firebaseConfig", Json::object());
        const auto values = plist.values();
        handled_.push_back(values ? *values : zib::ValueMap());
      },
      [endpoint](bool isRegistering) {
        sim::Timeline::shared().add("completion", {{"of", endpoint}, {"value", isRegistering}});
      });
}

Story PushFlow::run() {
  std::filesystem::remove(storedFile());
  return runAgain();
}

Story PushFlow::runAgain() {
  connect();
  device_.forget();
  handled_.clear();
  start_ = secondsNow();
  start();
  Device::drain();
  return story();
}

}  // namespace test
