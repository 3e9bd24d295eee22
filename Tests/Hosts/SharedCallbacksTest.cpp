// A callback that comes to the module by two ways, or more: through `super`, through a delegate
// that passes it on, by hand, or round and round through other libraries. The module handles it
// once, and the host's own code runs as it would without the module.

#include <algorithm>

#include "HostTest.h"

namespace hosts {
namespace {

constexpr const char* sceneMethod = "scene:openURLContexts:";
constexpr const char* presentMethod =
    "userNotificationCenter:willPresentNotification:withCompletionHandler:";
constexpr const char* tapMethod =
    "userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:";

class SuperTest : public HostTest {
 protected:
  // Scenes with delegates of both classes, in both orders.
  Object install(const char* className) {
    Object derived = make(className);
    base_ = make("BaseScene");
    sim::uikit::connectScene(true, derived);
    sim::uikit::connectScene(true, base_);
    configure();
    return derived;
  }

 private:
  Object base_;
};

TEST_F(SuperTest, WithTheSameLinksIsTheSameCallback) {
  const Object scene = install("SameScene");
  open(scene, {"app://one", "app://two"});
  EXPECT_EQ(happened(), (Lines{"handled", "SameScene openURLContexts", "BaseScene 2"}));
}

TEST_F(SuperTest, WithOtherLinksIsTheSameCallbackAndReachesTheSuperclass) {
  const Object scene = install("FilteringScene");
  open(scene, {"app://one", "app://two"});
  EXPECT_EQ(happened(), (Lines{"handled", "FilteringScene openURLContexts", "BaseScene 1"}));
}

TEST_F(SuperTest, InALaterTurnReachesTheSuperclassToo) {
  const Object scene = install("LaterScene");
  open(scene, {"app://one", "app://two"});
  EXPECT_EQ(happened(), (Lines{"handled", "LaterScene openURLContexts"}));
  Device::drain();
  EXPECT_EQ(happened(), (Lines{"handled", "BaseScene 1"}));
}

TEST_F(SuperTest, ACallOfItsOwnMethodStaysWithTheClass) {
  const Object scene = install("AgainScene");
  open(scene, {"app://one", "app://two"});
  EXPECT_EQ(happened(), (Lines{"handled", "AgainScene 2", "handled", "AgainScene 1"}));
}

class ExchangeTest : public HostTest {};

TEST_F(ExchangeTest, AMethodThatMovedToAnotherClassKeepsItsHost) {
  const Object scene = make("BaseScene");
  const Object other = make("Whole");
  sim::uikit::connectScene(true, scene);
  configure();
  exchangeMethods("BaseScene", "Whole", sceneMethod);
  open(other, {"app://one"});
  EXPECT_EQ(happened(), (Lines{"handled", "BaseScene 1"}));
  open(scene, {"app://one"});
  EXPECT_EQ(happened(), Lines{"Whole openURLContexts"});
}

using CountedOnceTest = HostTest;

TEST_F(CountedOnceTest, ADelegateThatPassesATapOnToChildrenThatInheritItsMethod) {
  const Object delegate = configureWith("Composite");
  tap(delegate);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-clicked", "Composite didReceive",
                               "Child didReceive", "Child didReceive", "completed"}));
}

TEST_F(CountedOnceTest, AHostThatHandsItsNotificationsInByHandAsWell) {
  const Object delegate = configureWith("ByHand");
  present(delegate);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-delivered", "ByHand willPresent",
                               "presented with 5"}));
  tap(delegate);
  EXPECT_EQ(happened(),
            (Lines{"handled", "event notification-clicked", "ByHand didReceive", "completed"}));
}

TEST_F(CountedOnceTest, ByHandAloneCountsEachTime) {
  const Object delegate = make("ByHand");
  tap(delegate);
  tap(delegate);
  EXPECT_EQ(happened(), (Lines{"ByHand didReceive", "event notification-clicked", "completed",
                               "ByHand didReceive", "event notification-clicked", "completed"}));
}

// Each library calls what it found before it. One that installs itself a second time finds the
// module, which had found the library.
class CircleTest : public HostTest {
 protected:
  Object install(const char* selector) {
    Object delegate = make("Whole");
    sim::usernotifications::setDelegate(delegate);
    sim::uikit::setAppDelegate(delegate);
    installLibrary("Whole", selector);
    configure();
    installLibrary("Whole", selector);
    return delegate;
  }
  // Without the lines of the library.
  Lines happenedElsewhere() {
    Lines lines = happened();
    calls_ =
        std::erase_if(lines, [](const std::string& line) { return line.starts_with("Library"); });
    return lines;
  }

  std::size_t calls_ = 0;
};

std::string circleLine(const std::string& selector) {
  return "error ZibMessaging: " + selector +
         " came back 16 times for one callback: other libraries call in a circle, which ends here";
}

TEST_F(CircleTest, EndsAndIsCompletedOnce) {
  const Object delegate = install(presentMethod);
  present(delegate);
  EXPECT_EQ(happenedElsewhere(), (Lines{"handled", "event notification-delivered",
                                        circleLine(presentMethod), "presented with 19"}));
  EXPECT_EQ(calls_, 17U);
}

TEST_F(CircleTest, OfTapsEndsAndIsCompletedOnce) {
  const Object delegate = install(tapMethod);
  tap(delegate);
  tap(delegate);
  const Lines each{"handled", "event notification-clicked", circleLine(tapMethod), "completed"};
  Lines twice = each;
  twice.insert(twice.end(), each.begin(), each.end());
  EXPECT_EQ(happenedElsewhere(), twice);
}

TEST_F(CircleTest, OfLinksEndsWithYes) {
  const Object delegate = install("application:openURL:options:");
  const auto url = zib::URL::parse("app://open");
  EXPECT_TRUE(test::openURL(delegate.raw(), url->native()));
  EXPECT_EQ(happenedElsewhere(), (Lines{"handled", circleLine("application:openURL:options:")}));
}

// A library that came before or after the module, once, is no circle.
TEST_F(CountedOnceTest, LibrariesBeforeAndAfterTheModule) {
  const Object delegate = make("Whole");
  sim::usernotifications::setDelegate(delegate);
  installLibrary("Whole", presentMethod);
  configure();
  present(delegate);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-delivered",
                               std::string("Library ") + presentMethod, "Whole willPresent",
                               "presented with 5"}));
}

}  // namespace
}  // namespace hosts

void hostDid(const char* what) { sim::Timeline::shared().add("host", {{"did", what}}); }

void handInByHand(zib::objc::id object, int isResponse) {
  if (isResponse != 0) {
    zib_messaging_did_receive(object);
  } else {
    zib_messaging_will_present(object);
  }
}
