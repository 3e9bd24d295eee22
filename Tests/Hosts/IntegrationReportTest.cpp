// What the module says of itself and others who stand before a host's delegates.

#include <algorithm>

#include "HostTest.h"
#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "ZibMessaging/ZibIntegrationReport.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace hosts {
namespace {

using Report = zib::IntegrationReport;
using State = Report::State;

constexpr const char* presentMethod =
    "userNotificationCenter:willPresentNotification:withCompletionHandler:";
constexpr const char* ours = "-[ZibSwizzleManager zib_willPresent:notification:completionHandler:]";

class IntegrationReportTest : public HostTest {
 protected:
  static Report::Row rowOf(std::string_view method) {
    const Report report = zib::integrationReport();
    EXPECT_EQ(report.rows.size(), 7U);
    const auto found = std::find_if(report.rows.begin(), report.rows.end(),
                                    [&](const auto& row) { return row.method == method; });
    return found == report.rows.end() ? Report::Row{} : *found;
  }
};

TEST_F(IntegrationReportTest, BeforeConfigure) {
  const Object delegate = make("Whole");
  sim::usernotifications::setDelegate(delegate);
  const auto row = rowOf(presentMethod);
  EXPECT_EQ(row.delegateClass, "Whole");
  EXPECT_EQ(row.state, State::none);
  ASSERT_EQ(row.chain.size(), 1U);
  EXPECT_EQ(row.chain[0].image, "HostTests");
  EXPECT_TRUE(row.remarks.empty());
  EXPECT_EQ(rowOf("application:openURL:options:").remarks, Lines{"no application delegate"});
  EXPECT_EQ(rowOf("scene:openURLContexts:").remarks, Lines{"no scene delegate"});
  EXPECT_EQ(rowOf("messaging:didReceiveRegistrationToken:").remarks, Lines{"no Firebase delegate"});
}

TEST_F(IntegrationReportTest, ASwappedMethodAndWhatItReplaced) {
  const Object delegate = configureWith("Whole");
  const auto row = rowOf(presentMethod);
  EXPECT_EQ(row.state, State::swapped);
  ASSERT_EQ(row.chain.size(), 2U);
  EXPECT_EQ(row.chain[0].symbol, ours);
  EXPECT_EQ(row.chain[1].image, "HostTests");
  EXPECT_TRUE(row.remarks.empty());
}

TEST_F(IntegrationReportTest, AnAddedAndAForwardedMethod) {
  const Object plain = make("Partial");
  sim::uikit::setAppDelegate(plain);
  const Object naming = make("Naming");
  setTarget(naming.raw(), make("Whole").raw());
  sim::usernotifications::setDelegate(naming);
  configure();
  EXPECT_EQ(rowOf("application:didFailToRegisterForRemoteNotificationsWithError:").state,
            State::added);
  EXPECT_EQ(rowOf(presentMethod).state, State::forwarding);
  EXPECT_EQ(rowOf(presentMethod).delegateClass, "Naming");
}

TEST_F(IntegrationReportTest, AnotherLibraryThatCameAfterUs) {
  const Object delegate = configureWith("Whole");
  installLibrary("Whole", presentMethod);
  const auto row = rowOf(presentMethod);
  EXPECT_EQ(row.state, State::swapped);
  EXPECT_EQ(row.remarks, Lines{"replaced after us by libraryMethod in HostTests"});
  ASSERT_EQ(row.chain.size(), 1U);
  EXPECT_EQ(row.chain[0].symbol, "libraryMethod");
}

TEST_F(IntegrationReportTest, AnotherLibraryThatCameBeforeUs) {
  installLibrary("Whole", presentMethod);
  const Object delegate = configureWith("Whole");
  const auto row = rowOf(presentMethod);
  EXPECT_TRUE(row.remarks.empty());
  ASSERT_EQ(row.chain.size(), 2U);
  EXPECT_EQ(row.chain[0].symbol, ours);
  EXPECT_EQ(row.chain[1].symbol, "libraryMethod");
}

TEST_F(IntegrationReportTest, LibrariesBeforeAndAfterUs) {
  installLibrary("Whole", presentMethod);
  const Object delegate = configureWith("Whole");
  installLibrary("Whole", presentMethod);
  const auto row = rowOf(presentMethod);
  EXPECT_EQ(row.state, State::swapped);
  ASSERT_EQ(row.chain.size(), 1U);
  EXPECT_EQ(row.chain[0].symbol, "libraryMethod");
  EXPECT_EQ(row.remarks, Lines{"replaced after us by libraryMethod in HostTests"});
}

// Observation puts a hidden class before the delegate's, which nobody who reads a report knows.
TEST_F(IntegrationReportTest, AnObservedDelegate) {
  const Object delegate = make("Whole");
  const zib::Class visible = zib::Class::ofObject(delegate.raw());
  const Object observer = make("Partial");
  const Object key = zib::makeString("badges");
  zib::send<void>(delegate.raw(), zib::selector<"addObserver:forKeyPath:options:context:">(),
                  observer.raw(), key.raw(), UInteger{0}, static_cast<void*>(nullptr));
  ASSERT_NE(zib::Class::ofObject(delegate.raw()), visible);
  sim::usernotifications::setDelegate(delegate);
  configure();
  const auto row = rowOf(presentMethod);
  EXPECT_EQ(row.delegateClass, "Whole");
  EXPECT_EQ(row.state, State::swapped);
  ASSERT_EQ(row.chain.size(), 2U);
  EXPECT_EQ(row.chain[0].symbol, ours);
  EXPECT_EQ(row.chain[1].image, "HostTests");
  EXPECT_TRUE(row.remarks.empty());
  zib::send<void>(delegate.raw(), zib::selector<"removeObserver:forKeyPath:">(), observer.raw(),
                  key.raw());
}

// As libraries do that change the application delegate's class: ours is still called, by theirs.
TEST_F(IntegrationReportTest, AHiddenClassThatCameAfterUs) {
  const Object delegate = configureWith("Whole");
  hideBehindLibrary(delegate.raw(), presentMethod);
  const auto row = rowOf(presentMethod);
  EXPECT_EQ(row.delegateClass, "Whole");
  EXPECT_EQ(row.state, State::swapped);
  EXPECT_EQ(row.remarks, Lines{"replaced after us by libraryMethod in HostTests"});
  present(delegate);
  EXPECT_EQ(happened(),
            (Lines{std::string("Library ") + presentMethod, "handled",
                   "event notification-delivered", "Whole willPresent", "presented with 5"}));
}

TEST_F(IntegrationReportTest, AHiddenClassOfASecondSceneIsIntercepted) {
  constexpr const char* method = "scene:openURLContexts:";
  const Object first = make("BaseScene");
  const Object second = make("Whole");
  sim::uikit::connectScene(true, first);
  sim::uikit::connectScene(true, second);
  configure();
  hideBehindLibrary(second.raw(), method);
  EXPECT_TRUE(rowOf(method).remarks.empty());
}

TEST_F(IntegrationReportTest, CallbacksByHand) {
  const Object delegate = configureWith("ByHand");
  for (int time = 0; time < 3; ++time) present(delegate);
  EXPECT_EQ(rowOf(presentMethod).remarks,
            Lines{"callbacks that were handed in by hand while we had them already: 3"});
}

TEST_F(IntegrationReportTest, ASecondSceneThatCameTooLate) {
  const Object first = make("BaseScene");
  const Object second = make("Whole");
  sim::uikit::connectScene(true, first);
  configure();
  sim::uikit::connectScene(true, second);
  EXPECT_EQ(rowOf("scene:openURLContexts:").remarks,
            Lines{"a second delegate of class Whole is not intercepted"});
}

TEST_F(IntegrationReportTest, AMethodOfOtherTypes) {
  const Object delegate = make("OddTypes");
  sim::uikit::setAppDelegate(delegate);
  configure();
  const auto row = rowOf("application:openURL:options:");
  EXPECT_EQ(row.state, State::swapped);
  EXPECT_EQ(row.remarks, Lines{"the method's types differ from the platform's"});
}

TEST_F(IntegrationReportTest, ADelegateThatRaisesWhereItIsAskedForItsClass) {
  const Object delegate = make("Classless");
  sim::uikit::setAppDelegate(delegate);
  const Object other = configureWith("Whole");
  const auto row = rowOf("application:didRegisterForRemoteNotificationsWithDeviceToken:");
  EXPECT_EQ(row.delegateClass, "Classless");
  EXPECT_EQ(row.state, State::swapped);
  EXPECT_EQ(row.chain.size(), 2U);
  EXPECT_EQ(row.remarks, Lines{"raises where it is asked for its class"});
  EXPECT_EQ(rowOf(presentMethod).state, State::swapped);
}

TEST_F(IntegrationReportTest, ANameOfSeveralLinesStaysOneInTheText) {
  constexpr const char* name = "Several\nLines\xC2\x85";
  zib::ClassBuilder builder(name, zib::Class::named("Whole"));
  builder.registerClass();
  const Object delegate = configureWith(name);
  EXPECT_EQ(rowOf(presentMethod).delegateClass, name);
  const std::string text = zib::integrationReport().text();
  EXPECT_NE(text.find(": swapped on Several\\nLines\\u{85}\n"), std::string::npos) << text;
  EXPECT_EQ(text.find("Several\nLines"), std::string::npos);
}

TEST_F(IntegrationReportTest, AsText) {
  const Object delegate = configureWith("Whole");
  const std::string text = zib::integrationReport().text();
  EXPECT_NE(text.find(std::string(presentMethod) + ": swapped on Whole\n  runs " + ours +
                      " in HostTests\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("application:openURL:options:: none\n  no application delegate\n"),
            std::string::npos)
      << text;
}

}  // namespace
}  // namespace hosts
