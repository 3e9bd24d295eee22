#include "Tests/Endurance/Host.h"

#include <cstdint>
#include <cstring>
#include <string>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "Tests/Endurance/CountingCore.h"
#include "Tests/Support/Delegates.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace endurance {
namespace {

using zib::BlockLayout;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

std::atomic<long> reached = 0;

void willPresent(id /*self*/, SEL /*command*/, id /*center*/, id /*notification*/,
                 BlockLayout* completion) {
  ++reached;
  zib::Block<void(UInteger)>::call(completion, 0);
}

void didReceive(id /*self*/, SEL /*command*/, id /*center*/, id /*response*/,
                BlockLayout* completion) {
  ++reached;
  zib::Block<void()>::call(completion);
}

// GCC's runtime chains the parts of a method table that it has given up through their first entry,
// while another thread may still call through them (measured: a call went to the next part). So the
// two callbacks must not stand first in theirs; Apple's runtime keeps such tables until nobody can
// look into them.
void keepCallbacksFromFirstEntries() {
  constexpr std::uint64_t entries = 32;
  constexpr std::uint64_t needed = 2;
  const auto entryOf = [](const std::string& name) {
    std::uint64_t number = 0;
    std::memcpy(&number, zib::Selector(name.c_str()).raw(), sizeof number);
    return number >> 32;
  };
  for (int index = 0; entryOf("enduranceFiller" + std::to_string(index)) + needed >= entries;) {
    ++index;
  }
  zib::selector<"userNotificationCenter:willPresentNotification:withCompletionHandler:">();
  zib::selector<"userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:">();
}

zib::Object makeDelegate() {
  const zib::Class cls =
      zib::ClassBuilder("EnduranceDelegate", zib::classNamed<"NSObject">())
          .method("userNotificationCenter:willPresentNotification:withCompletionHandler:",
                  &willPresent)
          .method("userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
                  &didReceive)
          .registerClass();
  return zib::Object::adopted(zib::send<id>(cls.object(), zib::selector<"new">()));
}

}  // namespace

Host::Host() {
  keepCallbacksFromFirstEntries();
  sim::foundation::install();
  sim::uikit::install(sim::uikit::ApplicationPresence::present, true);
  sim::usernotifications::install(std::nullopt);
  CountingCore::install(events_);
  delegate_ = makeDelegate();
  sim::usernotifications::setDelegate(delegate_);
  const zib::ValueMap userInfo{{"pn_campaign_id", "autumn"}, {"club", "gold"}, {"link", "app://a"}};
  notification_ = sim::usernotifications::makeNotification(userInfo);
  response_ = sim::usernotifications::makeResponse(userInfo, "tap");
  linkless_ = sim::usernotifications::makeResponse({{"club", "gold"}}, "tap");
}

void Host::configure() {
  ZibMessaging::shared().configure(zib::Application::retained(sim::uikit::application()));
  sim::Scheduler& scheduler = sim::Scheduler::shared();
  scheduler.advanceTo(scheduler.now() + sim::inNanoseconds(1.1));
  scheduler.drain();
}

void Host::present() {
  const zib::AutoreleasePool pool;
  ++sent_;
  test::willPresent(delegate_.raw(), notification_.raw(),
                    zib::Block<void(UInteger)>::from([this](UInteger) { ++completions_; }));
}

void Host::respond() { respondTo(response_); }

void Host::respondWithoutLink() { respondTo(linkless_); }

void Host::respondTo(const zib::Object& response) {
  const zib::AutoreleasePool pool;
  ++sent_;
  test::didReceive(delegate_.raw(), response.raw(),
                   zib::Block<void()>::from([this] { ++completions_; }));
}

long Host::callbacks() const { return reached; }

}  // namespace endurance
