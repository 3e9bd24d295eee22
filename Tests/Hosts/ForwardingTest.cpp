// Delegates that have none of the methods and answer by forwarding, as SwiftUI's application
// delegate, proxies and multicasters do. With the module between, the real delegate gets every
// callback as before, and its answers and completions are those that the system gets.

#include "HostTest.h"
#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Tests/Support/TestSeam.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace hosts {
namespace {

class ForwardingTest : public HostTest, public testing::WithParamInterface<const char*> {
 protected:
  // A delegate of everything, with that target, before configure() runs.
  void install(const char* target) {
    if (target != nullptr) aim(target);
    sim::uikit::setAppDelegate(delegate_);
    sim::uikit::connectScene(true, delegate_);
    sim::usernotifications::setDelegate(delegate_);
    sim::firebase::set({});
    sim::firebase::setDelegate(delegate_);
    configure();
  }
  void aim(const char* target) {
    setTarget(delegate_.raw(), target == nullptr ? nullptr : make(target).raw());
  }
  [[nodiscard]] bool openURL() const {
    return test::openURL(delegate_.raw(), zib::URL::parse("app://open")->native(),
                         zib::objectFrom(zib::ValueMap()).raw());
  }
  void giveToken() const { test::deviceToken(delegate_.raw(), zib::makeData(zib::Bytes{1}).raw()); }

  Object delegate_ = make(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Delegate, ForwardingTest, testing::Values("Naming", "Invoking", "Proxy"),
                         [](const auto& each) { return std::string(each.param); });

TEST_P(ForwardingTest, EveryCallbackReachesTheTarget) {
  install("Whole");
  giveToken();
  EXPECT_EQ(happened(), (Lines{"handled", "Whole didRegister"}));
  test::registrationFailure(delegate_.raw(), zib::Error{"Host", 7, "no", {}}.nativeError().raw());
  EXPECT_EQ(happened(), (Lines{"handled", "error Failed to register for push", "Whole didFail"}));
  EXPECT_FALSE(openURL());
  EXPECT_EQ(happened(), (Lines{"handled", "Whole openURL"}));
  open(delegate_, {"app://one"});
  EXPECT_EQ(happened(), (Lines{"handled", "Whole openURLContexts"}));
  present(delegate_);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-delivered", "Whole willPresent",
                               "presented with 5"}));
  tap(delegate_);
  EXPECT_EQ(happened(),
            (Lines{"handled", "event notification-clicked", "Whole didReceive", "completed"}));
  test::fcmToken(delegate_.raw(), zib::makeString("token").raw());
  EXPECT_EQ(happened(), (Lines{"handled", "Whole token"}));
}

TEST_P(ForwardingTest, ATargetThatHasSomeOfTheMethods) {
  install("Partial");
  giveToken();
  EXPECT_EQ(happened(), (Lines{"handled", "Partial didRegister"}));
  EXPECT_TRUE(openURL());
  EXPECT_EQ(happened(), (Lines{"handled", "Partial openURL"}));
  present(delegate_);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-delivered", "presented with 19"}));
  tap(delegate_);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-clicked", "completed"}));
}

TEST_P(ForwardingTest, ATargetThatChanges) {
  install("Whole");
  EXPECT_FALSE(openURL());
  happened();
  aim("Partial");
  EXPECT_TRUE(openURL());
  EXPECT_EQ(happened(), (Lines{"handled", "Partial openURL"}));
}

TEST_P(ForwardingTest, AnAnswerOfTheTargetIsNoSavedMethod) {
  install("Whole");
  for (const auto row : {zib::Row::didRegister, zib::Row::openURL, zib::Row::willPresent}) {
    EXPECT_FALSE(ZibTestSeam::didSwap(row));
    EXPECT_EQ(ZibTestSeam::original(row), nullptr);
  }
}

// Who passes invocations on and is an NSObject answers yes once its class has the method, whatever
// became of its target, so its answer cannot be asked for any more.
class TargetGoneTest : public ForwardingTest {};

INSTANTIATE_TEST_SUITE_P(Delegate, TargetGoneTest, testing::Values("Naming", "Proxy"),
                         [](const auto& each) { return std::string(each.param); });

TEST_P(TargetGoneTest, TheModuleCompletes) {
  install("Whole");
  aim(nullptr);
  giveToken();
  EXPECT_EQ(happened(), Lines{"handled"});
  EXPECT_TRUE(openURL());
  present(delegate_);
  tap(delegate_);
  EXPECT_EQ(happened(),
            (Lines{"handled", "handled", "event notification-delivered", "presented with 19",
                   "handled", "event notification-clicked", "completed"}));
}

using NobodyTest = ForwardingTest;

INSTANTIATE_TEST_SUITE_P(Delegate, NobodyTest, testing::Values("Invoking"),
                         [](const auto& each) { return std::string(each.param); });

TEST_P(NobodyTest, ACompletionThatNobodyCanCallAnyMoreIsCalledByTheModule) {
  install("Whole");
  aim(nullptr);
  present(delegate_);
  Device::drain();
  tap(delegate_);
  Device::drain();
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-delivered", "presented with 19",
                               "handled", "event notification-clicked", "completed"}));
}

// Who takes invocations and is an NSObject cannot be asked here either.
using TargetLateTest = TargetGoneTest;

INSTANTIATE_TEST_SUITE_P(Delegate, TargetLateTest, testing::Values("Naming", "Proxy"),
                         [](const auto& each) { return std::string(each.param); });

TEST_P(TargetLateTest, EveryCallbackReachesTheTargetFromThenOn) {
  install(nullptr);
  tap(delegate_);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-clicked", "completed"}));
  aim("Whole");
  giveToken();
  EXPECT_FALSE(openURL());
  open(delegate_, {"app://one"});
  test::fcmToken(delegate_.raw(), zib::makeString("token").raw());
  EXPECT_EQ(happened(), (Lines{"handled", "Whole didRegister", "handled", "Whole openURL",
                               "handled", "Whole openURLContexts", "handled", "Whole token"}));
  present(delegate_);
  tap(delegate_);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-delivered", "Whole willPresent",
                               "presented with 5", "handled", "event notification-clicked",
                               "Whole didReceive", "completed"}));
}

TEST_P(TargetLateTest, ATargetWithMoreMethodsThanTheOneBefore) {
  install("Partial");
  aim("Whole");
  tap(delegate_);
  EXPECT_EQ(happened(),
            (Lines{"handled", "event notification-clicked", "Whole didReceive", "completed"}));
  aim("Partial");
  tap(delegate_);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-clicked", "completed"}));
}

using AnswersTest = HostTest;

// The system would not have called it.
TEST_F(AnswersTest, ATargetThatTheDelegateDoesNotAnswerForIsNotCalled) {
  const Object delegate = configureWith("Helped");
  setTarget(delegate.raw(), make("Whole").raw());
  tap(delegate);
  EXPECT_EQ(happened(), (Lines{"handled", "event notification-clicked", "completed"}));
}

TEST_F(AnswersTest, ADelegateThatGetsItsMethodWhenItIsAsked) {
  const Object delegate = configureWith("Lazy");
  tap(delegate);
  EXPECT_EQ(happened(),
            (Lines{"handled", "event notification-clicked", "Lazy didReceive", "completed"}));
}

class OlderURLMethodsTest : public HostTest {
 protected:
  bool openURL(const char* className) {
    delegate_ = make(className);
    sim::uikit::setAppDelegate(delegate_);
    configure();
    const zib::ValueMap options{
        {"UIApplicationOpenURLOptionsSourceApplicationKey", "com.example.Mail"},
        {"UIApplicationOpenURLOptionsAnnotationKey", "note"}};
    return test::openURL(delegate_.raw(), zib::URL::parse("app://open")->native(),
                         zib::objectFrom(options).raw());
  }

 private:
  Object delegate_;
};

TEST_F(OlderURLMethodsTest, TheOneWithASourceApplication) {
  EXPECT_FALSE(openURL("Legacy"));
  EXPECT_EQ(happened(), (Lines{"handled", "Legacy app://open from com.example.Mail with note"}));
}

TEST_F(OlderURLMethodsTest, TheOldest) {
  EXPECT_FALSE(openURL("Oldest"));
  EXPECT_EQ(happened(), (Lines{"handled", "Oldest app://open"}));
}

TEST_F(OlderURLMethodsTest, NotForAHostWithTheNewerOne) {
  EXPECT_FALSE(openURL("Whole"));
  EXPECT_EQ(happened(), (Lines{"handled", "Whole openURL"}));
}

class RootClassTest : public HostTest {};

TEST_F(RootClassTest, GetsNothingAdded) {
  const Object delegate = make("RootClaiming");
  sim::uikit::setAppDelegate(delegate);
  configure();
  const zib::Selector method("application:openURL:options:");
  EXPECT_FALSE(zib::classNamed<"NSObject">().instanceMethod(method));
  EXPECT_TRUE(zib::Class::ofObject(delegate.raw()).instanceMethod(method));
}

TEST_F(RootClassTest, ItsOwnObjectIsLeftAlone) {
  const Object delegate = Object::adopted(
      zib::send<id>(zib::classNamed<"NSObject">().object(), zib::selector<"new">()));
  sim::uikit::setAppDelegate(delegate);
  configure();
  EXPECT_FALSE(
      zib::classNamed<"NSObject">().instanceMethod(zib::Selector("application:openURL:options:")));
}

}  // namespace
}  // namespace hosts
