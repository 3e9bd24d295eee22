// Who keeps a delegate alive: as on a device, it is not the system.

#include <gtest/gtest.h>

#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "Tests/Support/Device.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::id;
using zib::objc::UInteger;

class DelegatesTest : public testing::Test {
 protected:
  static Object make() { return zib::create<"NSObject">(); }
  static id delegateOf(id owner) {
    const zib::AutoreleasePool pool;
    return send<id>(owner, selector<"delegate">());
  }
  // As the host's own code does it, which keeps nothing.
  static void setDelegate(id owner, const Object& delegate) {
    const zib::AutoreleasePool pool;
    send<void>(owner, selector<"setDelegate:">(), delegate.raw());
  }
  static UInteger countOf(const Object& object) {
    return send<UInteger>(object.raw(), selector<"retainCount">());
  }
  static void expectWeak(id owner) {
    {
      const Object delegate = make();
      setDelegate(owner, delegate);
      EXPECT_EQ(delegateOf(owner), delegate.raw());
      EXPECT_EQ(countOf(delegate), 1U);
    }
    EXPECT_EQ(delegateOf(owner), nullptr);
  }

  test::Device device_;
};

TEST_F(DelegatesTest, TheNotificationCentersIsHeldWeakly) {
  expectWeak(sim::usernotifications::center());
}

TEST_F(DelegatesTest, FirebasesIsHeldWeakly) {
  sim::firebase::set({});
  expectWeak(sim::firebase::messaging());
}

TEST_F(DelegatesTest, TheApplicationsIsNotRetained) {
  const id application = test::Device::application().native();
  const Object delegate = make();
  setDelegate(application, delegate);
  EXPECT_EQ(delegateOf(application), delegate.raw());
  EXPECT_EQ(countOf(delegate), 1U);
  setDelegate(application, {});
}

}  // namespace
