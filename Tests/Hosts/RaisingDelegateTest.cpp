// Delegates that raise while the module looks at them: what one breaks is said in one error line,
// and costs neither the other methods nor the other delegates anything.

#include "HostTest.h"
#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "ZibMessaging/ZibIntegrationReport.h"

namespace hosts {
namespace {

using State = zib::IntegrationReport::State;

class RaisingDelegateTest : public HostTest {
 protected:
  // "error line: exception" of each since the last time.
  Lines configureAndTakeErrors() {
    zib_messaging_configure(Device::application().native());
    Lines lines;
    for (const sim::Json& entry : device_.entries("log")) {
      if (entry.at("level") != "error") continue;
      lines.push_back(entry.at("message").get<std::string>() + ": " +
                      entry.at("error").at("description").get<std::string>());
    }
    device_.forget();
    return lines;
  }

  static std::vector<State> states() {
    std::vector<State> states;
    for (const auto& row : zib::integrationReport().rows) states.push_back(row.state);
    return states;
  }
};

TEST_F(RaisingDelegateTest, ARowThatRaisesCostsTheOthersNothing) {
  const Object unsure = make("Unsure");
  sim::uikit::setAppDelegate(unsure);
  sim::uikit::connectScene(true, unsure);
  sim::usernotifications::setDelegate(unsure);
  sim::firebase::set({});
  sim::firebase::setDelegate(unsure);
  beginToRaise();
  EXPECT_EQ(configureAndTakeErrors(),
            (Lines{"ZibMessaging: stopped an exception in intercepting "
                   "application:openURL:options: of Unsure: Planned: no answer",
                   "ZibMessaging: stopped an exception in intercepting "
                   "userNotificationCenter:willPresentNotification:withCompletionHandler: of "
                   "Unsure: Planned: no answer"}));
  EXPECT_EQ(states(), (std::vector{State::added, State::added, State::none, State::added,
                                   State::none, State::added, State::added}));
}

TEST_F(RaisingDelegateTest, AProxyThatRaisesForOneSignature) {
  const Object proxy = make("UnsureProxy");
  sim::usernotifications::setDelegate(proxy);
  sim::firebase::set({});
  sim::firebase::setDelegate(proxy);
  EXPECT_EQ(configureAndTakeErrors(),
            Lines{"ZibMessaging: stopped an exception in intercepting "
                  "userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler: "
                  "of UnsureProxy: Planned: no signature"});
  const auto rows = zib::integrationReport().rows;
  EXPECT_NE(rows[4].state, State::none);
  EXPECT_EQ(rows[5].state, State::none);
  EXPECT_NE(rows[6].state, State::none);
}

TEST_F(RaisingDelegateTest, ADelegateThatRaisesWhereItIsAskedForItsClassIsTakenForWhatItIs) {
  const Object classless = make("Classless");
  const Object other = make("Whole");
  sim::uikit::setAppDelegate(classless);
  sim::uikit::connectScene(true, classless);
  sim::uikit::connectScene(true, other);
  const Lines raised{
      "ZibMessaging: stopped an exception in asking a delegate of Classless for its "
      "class: Planned: no class"};
  EXPECT_EQ(configureAndTakeErrors(), (Lines{raised[0], raised[0]}));
  const auto rows = zib::integrationReport().rows;
  for (const std::size_t row : {0U, 1U, 2U, 3U}) {
    EXPECT_EQ(rows[row].delegateClass, "Classless");
    EXPECT_EQ(rows[row].remarks, Lines{"raises where it is asked for its class"});
  }
  EXPECT_EQ(rows[0].state, State::swapped);
  EXPECT_EQ(rows[1].state, State::added);
  EXPECT_EQ(rows[2].state, State::added);
  EXPECT_EQ(rows[3].state, State::added);
  device_.forget();

  test::deviceToken(classless.raw(), zib::makeData(zib::Bytes{1}).raw());
  EXPECT_EQ(happened(), (Lines{"handled", "Classless didRegister"}));
  open(other, {"app://one"});
  EXPECT_EQ(happened(), (Lines{"handled", "Whole openURLContexts"}));
}

}  // namespace
}  // namespace hosts
