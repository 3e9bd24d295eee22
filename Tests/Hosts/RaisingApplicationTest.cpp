// Applications of hosts whose setter of the delegate raises while the module has the system ask the
// delegate anew: the delegate stays, is asked, and one error line says what happened.

#include "HostTest.h"
#include "Tests/Support/RowName.h"

namespace hosts {
namespace {

struct Raising {
  const char* name;
  RaisingSetter when;
  bool isAfterSuper;
};

void PrintTo(const Raising& row, std::ostream* stream) { *stream << row.name; }

constexpr Raising everyRaising[] = {
    {"ForNil", forNil, false},
    {"ForNilAfterSuper", forNil, true},
    {"ForDelegate", forDelegate, false},
    {"ForDelegateAfterSuper", forDelegate, true},
    {"TheFirstTime", theFirstTime, false},
    {"TheFirstTimeAfterSuper", theFirstTime, true},
    {"ForTheFirstDelegate", forTheFirstDelegate, false},
    {"ForTheFirstDelegateAfterSuper", forTheFirstDelegate, true},
    {"EachTime", eachTime, false},
    {"EachTimeAfterSuper", eachTime, true},
};

class RaisingApplicationTest : public HostTest, public testing::WithParamInterface<Raising> {};

INSTANTIATE_TEST_SUITE_P(Every, RaisingApplicationTest, testing::ValuesIn(everyRaising),
                         test::rowName);

TEST_P(RaisingApplicationTest, KeepsItsDelegateWhichIsAskedAnew) {
  const Object host = make("Naming");
  const Object whole = make("Whole");
  sim::uikit::setAppDelegate(host);
  makeSetterRaise(sim::uikit::application(), GetParam().when,
                  static_cast<int>(GetParam().isAfterSuper));
  setTarget(host.raw(), whole.raw());
  ASSERT_FALSE(sim::uikit::deliverDeviceToken(zib::Bytes{1}));

  zib_messaging_configure(Device::application().native());
  EXPECT_EQ(device_.errorLines(),
            Lines{"ZibMessaging: stopped an exception in renewing the application's delegate"});
  EXPECT_EQ(sim::uikit::appDelegate(), host.raw());
  device_.forget();
  EXPECT_TRUE(sim::uikit::deliverDeviceToken(zib::Bytes{1}));
  EXPECT_EQ(happened(), (Lines{"handled", "Whole didRegister"}));
}

}  // namespace
}  // namespace hosts
