#include "Benchmarks/Growth.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iostream>

#include "Benchmarks/Comparison.h"
#include "Benchmarks/Device.h"
#include "Benchmarks/Inputs.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Send.h"

// GNUstep's own count of the objects that live.
extern "C" {
zib::objc::BOOL GSDebugAllocationActive(zib::objc::BOOL active);
int GSDebugAllocationCount(objc_class* cls);
int GSDebugAllocationTotal(objc_class* cls);
objc_class** GSDebugAllocationClassList();
}

namespace bench {
namespace {

// The quickest of several batches: noise only ever adds.
double nanosecondsOf(const std::function<void()>& call, int calls) {
  measure(call, calls);
  double best = measure(call, calls).nanoseconds;
  for (int again = 0; again < 15; ++again) {
    best = std::min(best, measure(call, calls).nanoseconds);
  }
  return best;
}

void printPayloads() {
  std::cout << "Event of a payload with many keys, in ns\n";
  for (const std::size_t keys : {10U, 100U, 1'000U, 10'000U}) {
    const auto userInfo = zib::Dictionary::retained(payloadOf(keys).raw());
    const double cost =
        nanosecondsOf([&] { ZibMessaging::shared().trackNotificationOpened(userInfo); }, 200);
    std::cout << std::setw(8) << keys << " keys" << std::setw(10) << cost << '\n';
  }
}

void printCampaignParameters() {
  std::cout << "Opened URL with many campaign parameters, in ns\n";
  for (const std::size_t parameters : {1U, 10U, 100U, 1'000U}) {
    const auto url = zib::URL::parse(campaignURL(parameters)).value();
    const auto open = [&] {
      zib::send<zib::objc::BOOL>(hosts().intercepted.raw(),
                                 zib::selector<"application:openURL:options:">(), application(),
                                 url.native(), zib::objc::id());
    };
    const double cost = nanosecondsOf(open, static_cast<int>(std::max(200 / parameters, 4UL)));
    std::cout << std::setw(8) << parameters << " parameters" << std::setw(10) << cost
              << std::setw(10) << cost / static_cast<double>(parameters) << " each\n";
  }
}

long residentKilobytes() {
  std::ifstream status("/proc/self/statm");
  long total = 0;
  long resident = 0;
  status >> total >> resident;
  return resident * sysconf(_SC_PAGESIZE) / 1024;
}

// The sum of a figure over all classes.
long sumOf(int (*figure)(objc_class*)) {
  objc_class** const classes = GSDebugAllocationClassList();
  long sum = 0;
  for (objc_class** cls = classes; *cls != nullptr; ++cls) sum += figure(*cls);
  std::free(classes);  // NOLINT: handed over so
  return sum;
}

long liveObjects() { return sumOf(&GSDebugAllocationCount); }
long madeObjects() { return sumOf(&GSDebugAllocationTotal); }

const Case& caseNamed(std::string_view name) {
  return *std::find_if(cases().begin(), cases().end(),
                       [&](const Case& each) { return each.name == name; });
}

void printMillion() {
  const Case& response = caseNamed("respond 12 keys");
  const Case& deviceToken = caseNamed("device token");
  const Case& fcmToken = caseNamed("FCM token");
  std::cout << "Responses, device tokens and FCM tokens, each that often\n";
  GSDebugAllocationActive(1);
  long objectsAtStart = 0;
  long residentAtStart = 0;
  int done = 0;
  for (const int until : {1'000, 10'000, 100'000, 1'000'000}) {
    for (; done < until; ++done) {
      const zib::AutoreleasePool pool;
      response.ours();
      deviceToken.ours();
      fcmToken.ours();
    }
    if (objectsAtStart == 0) objectsAtStart = liveObjects();
    if (residentAtStart == 0) residentAtStart = residentKilobytes();
    std::cout << std::setw(10) << done << " times: resident " << residentKilobytes() << " KB ("
              << std::showpos << residentKilobytes() - residentAtStart << "), runtime objects "
              << liveObjects() - objectsAtStart << std::noshowpos << " of " << madeObjects()
              << " made" << std::endl;
  }
}

}  // namespace

void printGrowth() {
  configureBoth();
  std::cout << std::fixed << std::setprecision(0);
  printPayloads();
  printCampaignParameters();
  printMillion();
}

}  // namespace bench
