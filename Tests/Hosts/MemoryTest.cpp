// What may be let go while the module handles a callback: the delegate that the system calls, and
// the content of the notification.

#include <memory>

#include "HostTest.h"
#include "Simulator/ObjectiveC/StandIn.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace hosts {
namespace {

class MemoryTest : public HostTest {};

TEST_F(MemoryTest, ADelegateThatIsLetGoDuringItsCallIsStillCalled) {
  Object delegate = make("Whole");
  sim::usernotifications::setDelegate(delegate);
  configure();
  const id called = delegate.raw();
  ZibDeepLinkHandler::shared().setURLDelegate([&](const zib::URL&) {
    sim::usernotifications::setDelegate({});
    delegate = {};
    return true;
  });
  test::didReceive(called,
                   sim::usernotifications::makeResponse({{"url", "app://one"}}, "tap").raw(),
                   zib::Block<void()>::from([] { record("completion", "of", "completed"); }));
  EXPECT_EQ(happened(),
            (Lines{"handled", "event notification-clicked", "Whole didReceive", "completed"}));
}

// Takes the payload away before it reads it.
class Emptying final : public ZibMessagingDelegate {
 public:
  explicit Emptying(id notification) : notification_(notification) {}
  void zibMessagingDidReceiveNotification(ZibMessaging& /*messaging*/,
                                          const zib::Dictionary& userInfo) override {
    const id request = zib::send<id>(notification_, zib::selector<"request">());
    const id content = zib::send<id>(request, zib::selector<"content">());
    sim::setProperty(content, "userInfo", zib::objectFrom(zib::ValueMap()));
    club = userInfo.text("club").utf8();
  }

  std::string club;

 private:
  id notification_;
};

TEST_F(MemoryTest, AContentThatIsChangedDuringTheCallKeepsItsPayload) {
  const Object notification = sim::usernotifications::makeNotification({{"club", "gold"}});
  const auto delegate = std::make_shared<Emptying>(notification.raw());
  ZibMessaging::shared().setDelegate(delegate);
  ZibMessaging::shared().willPresent(zib::Notification::retained(notification.raw()));
  EXPECT_EQ(delegate->club, "gold");
}

}  // namespace
}  // namespace hosts
