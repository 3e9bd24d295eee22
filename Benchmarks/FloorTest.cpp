// That the floors are honest: they hand the core, the host and the system what the module hands
// them.

#include "Benchmarks/Floor.h"

#include <gtest/gtest.h>

#include "Benchmarks/Cases.h"
#include "Benchmarks/Comparison.h"
#include "Benchmarks/Device.h"
#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace bench {
namespace {

struct Trace {
  std::vector<std::string> core;
  unsigned long hostCalls;
  unsigned long completions;

  friend bool operator==(const Trace&, const Trace&) = default;
};

Trace traceOf(const std::function<void()>& call) {
  const unsigned long hostCallsBefore = hostCalls();
  const unsigned long completionsBefore = completions();
  startRecording();
  call();
  drainMainQueue();
  return {takeRecord(), hostCalls() - hostCallsBefore, completions() - completionsBefore};
}

// The hosts' class names, the only thing that the sides' starts differ in.
std::vector<std::string> withoutHostName(std::vector<std::string> lines, std::string_view name) {
  for (std::string& line : lines) {
    if (const std::size_t at = line.find(name); at != std::string::npos) line.resize(at);
  }
  return lines;
}

class FloorTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setUpDevice();
    const zib::AutoreleasePool pool;
    installSink();
    setDelegate(hosts().intercepted);
    startOfModule() = traceOf(&configureOurs);
    setDelegate(hosts().floor);
    startOfFloor() = traceOf(&configureFloor);
  }
  static Trace& startOfModule() {
    static Trace trace;
    return trace;
  }
  static Trace& startOfFloor() {
    static Trace trace;
    return trace;
  }

 private:
  zib::AutoreleasePool pool_;
};

TEST_F(FloorTest, StartsAlike) {
  EXPECT_GT(startOfFloor().core.size(), 10U);
  EXPECT_EQ(withoutHostName(startOfFloor().core, "FloorHost"),
            withoutHostName(startOfModule().core, "InterceptedHost"));
}

TEST_F(FloorTest, GivesTheSameInEachCase) {
  for (const Case& each : cases()) {
    if (each.target == 0) continue;
    if (each.setUp) each.setUp();
    const Trace floor = traceOf(each.floor);
    const Trace ours = traceOf(each.ours);
    if (each.tearDown) each.tearDown();
    EXPECT_EQ(floor.core, ours.core) << each.name;
    const bool isSilent = each.name == "link none" || each.name == "payload";
    EXPECT_EQ(ours.core.empty(), isSilent) << each.name;
    EXPECT_EQ(floor.hostCalls, ours.hostCalls) << each.name;
    EXPECT_EQ(floor.completions, ours.completions) << each.name;
  }
}

TEST_F(FloorTest, TreatsOddPayloadsAlike) {
  const std::vector<zib::ValueMap> payloads{
      {},
      {{"pn_type", "PUSH-NOTIFICATION-SEND-TEST"}, {"link", "app://a"}},
      {{"pn_type", 7}, {"club", 5}, {"node_id", ""}, {"link", "NA"}, {"deep_link", "app://b"}},
      {{"club", "Größe 10 €"}, {"_id", "😀"}, {"url", "not a url"}, {"link", "app://c"}},
      {{"club", std::string(5'000, 'x')}, {"click_url", "app://d/" + std::string(3'000, 'y')}},
  };
  for (const zib::ValueMap& payload : payloads) {
    const auto userInfo = zib::Dictionary::from(payload);
    const zib::objc::id native = userInfo.native();
    const auto track = [](const FlatEvent& event) { trackFlatEvent("schema", event); };
    const Trace floor = traceOf([&] {
      floor::handleNotificationURL(native);
      track(floor::eventOf(native, "type"));
    });
    const Trace ours = traceOf([&] {
      ZibDeepLinkHandler::shared().handleNotificationURL(userInfo);
      Zib::shared().trackSelfDescribingEvent(
          "schema", ZibPayloadBuilder::createNotificationPayload(userInfo, "type"));
    });
    EXPECT_EQ(floor.core, ours.core);
  }
}

TEST_F(FloorTest, CountsPlantedAllocations) {
  const auto log = [] { ZibLogger::shared().log("line"); };
  const double before = measure(log, 10).allocations;
  plantAllocation();
  EXPECT_EQ(measure(log, 10).allocations, before + 1);
}

}  // namespace
}  // namespace bench
