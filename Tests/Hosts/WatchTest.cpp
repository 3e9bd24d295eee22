// A module that keeps watch: delegates that come at any time are intercepted as they come, each
// class once, and each callback counts once.

#include <algorithm>

#include "HostTest.h"
#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace hosts {
namespace {

using zib::selector;
using zib::send;

// As hosts do it, by the setter that they all have.
void setDelegate(id owner, const Object& delegate) {
  send<void>(owner, selector<"setDelegate:">(), delegate.raw());
}

void post(const char* name, id object) {
  send<void>(
      send<id>(zib::classNamed<"NSNotificationCenter">().object(), selector<"defaultCenter">()),
      selector<"postNotificationName:object:">(), zib::makeString(name).raw(), object);
}

class WatchTest : public HostTest {
 protected:
  void configureWatching() {
    ZibMessaging::shared().setDelegateDiscovery(zib::DelegateDiscovery::continuous);
    configure();
  }
  std::size_t swapped() {
    const Lines lines = device_.infoLines();
    return static_cast<std::size_t>(
        std::count_if(lines.begin(), lines.end(),
                      [](const std::string& line) { return line.starts_with("  ✓ Swapped"); }));
  }

  static id center() { return sim::usernotifications::center(); }
};

TEST_F(WatchTest, ATapThatStartsTheAppIsCounted) {
  configureWatching();
  tap(Object::retained(ZibMessaging::runtimeObject()));
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-clicked", "completed"}));
}

TEST_F(WatchTest, ANotificationDelegateThatIsSetLateIsIntercepted) {
  configureWatching();
  Device::advance(5);
  device_.forget();
  const Object delegate = make("Whole");
  setDelegate(center(), delegate);
  EXPECT_EQ(device_.countOfLine("🔔 Found UNUserNotificationCenterDelegate (delayed): Whole"), 1U);
  EXPECT_EQ(sim::usernotifications::delegate(), delegate.raw());
  device_.forget();
  present(delegate);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-delivered", "Whole willPresent",
                               "presented with 5"}));
}

TEST_F(WatchTest, AClassIsInterceptedOnce) {
  configureWatching();
  const Object delegate = make("Whole");
  setDelegate(center(), delegate);
  EXPECT_EQ(swapped(), 2U);
  setDelegate(center(), Object());
  setDelegate(center(), delegate);
  setDelegate(center(), make("Whole"));
  post("UIApplicationDidFinishLaunchingNotification", sim::uikit::application());
  Device::advance(5);
  EXPECT_EQ(swapped(), 2U);
  device_.forget();
  tap(delegate);
  EXPECT_EQ(happened(),
            (Lines{"handled", "event notification-clicked", "Whole didReceive", "completed"}));
}

TEST_F(WatchTest, ASceneThatConnectsLate) {
  configureWatching();
  Device::advance(60);
  const Object delegate = make("BaseScene");
  sim::uikit::connectScene(true, delegate);
  post("UISceneWillConnectNotification", sim::uikit::scene(0));
  device_.forget();
  open(delegate, {"app://one"});
  EXPECT_EQ(happened(), (Lines{"handled", "BaseScene 1"}));
}

TEST_F(WatchTest, AnApplicationDelegateThatIsThereOnceTheAppHasLaunched) {
  configureWatching();
  const Object delegate = make("Whole");
  sim::uikit::setAppDelegate(delegate);
  post("UIApplicationDidFinishLaunchingNotification", sim::uikit::application());
  device_.forget();
  test::deviceToken(delegate.raw(), zib::makeData(zib::Bytes{1}).raw());
  EXPECT_EQ(happened(), (Lines{"handled", "Whole didRegister"}));
}

TEST_F(WatchTest, AFirebaseDelegateThatIsSetLate) {
  sim::firebase::set({});
  configureWatching();
  Device::advance(5);
  const Object delegate = make("Whole");
  setDelegate(sim::firebase::messaging(), delegate);
  device_.forget();
  test::fcmToken(delegate.raw(), zib::makeString("token").raw());
  EXPECT_EQ(happened(), (Lines{"handled", "Whole token"}));
}

// The library that came before the module comes again, and finds the module, which had found it:
// the system's own setter is out of reach for all of them.
TEST_F(WatchTest, LibrariesThatSetDelegatesInACircleEnd) {
  installSetterLibrary("UNUserNotificationCenter");
  configureWatching();
  installSetterLibrary("UNUserNotificationCenter");
  device_.forget();
  const Object delegate = make("Whole");
  setDelegate(center(), delegate);
  Lines lines = happened();
  EXPECT_EQ(std::erase(lines, "Library setDelegate:"), 17);
  EXPECT_EQ(lines, Lines{"error ZibMessaging: setDelegate: came back 16 times for one callback: "
                         "other libraries call in a circle, which ends here"});
}

TEST_F(WatchTest, ALibraryBeforeOneSetterIsNoCircle) {
  installSetterLibrary("UNUserNotificationCenter");
  configureWatching();
  const Object delegate = make("Whole");
  setDelegate(center(), delegate);
  EXPECT_EQ(sim::usernotifications::delegate(), delegate.raw());
  tap(delegate);
  EXPECT_EQ(happened(), (Lines{"Library setDelegate:", "handled", "event notification-clicked",
                               "Whole didReceive", "completed"}));
}

TEST_F(WatchTest, NobodyWatchesUnlessAsked) {
  configure();
  Device::advance(5);
  const Object delegate = make("Whole");
  setDelegate(center(), delegate);
  device_.forget();
  tap(delegate);
  EXPECT_EQ(happened(), (Lines{"Whole didReceive", "completed"}));
}

}  // namespace
}  // namespace hosts
