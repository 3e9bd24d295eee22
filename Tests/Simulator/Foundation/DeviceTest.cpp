// The facts about the device that Foundation answers with.

#include <gtest/gtest.h>

#include <ctime>

#include "Simulator/Foundation/Foundation.h"
#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Process.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::classNamed;
using zib::selector;
using zib::send;
using zib::utf8From;
using zib::objc::id;
using zib::objc::UInteger;

constexpr double referenceDate = 978307200;

class DeviceTest : public test::FoundationTest {};

double seconds(id date) { return send<double>(date, selector<"timeIntervalSince1970">()); }

id newDate() { return send<id>(classNamed<"NSDate">().object(), selector<"date">()); }

id urlsFor(UInteger directory, UInteger domains) {
  const id manager = send<id>(classNamed<"NSFileManager">().object(), selector<"defaultManager">());
  return send<id>(manager, selector<"URLsForDirectory:inDomains:">(), directory, domains);
}

UInteger count(id collection) { return send<UInteger>(collection, selector<"count">()); }

TEST_F(DeviceTest, InstallingTwiceChangesNothing) {
  sim::foundation::setMainBundlePath("/Applications/One.app");
  sim::foundation::install();
  EXPECT_EQ(zib::mainBundlePath(), "/Applications/One.app");
}

TEST_F(DeviceTest, MainBundleLiesWhereItIsSet) {
  EXPECT_EQ(zib::mainBundlePath(), "/Applications/HostApp.app");
  EXPECT_FALSE(zib::isAppExtension());
  sim::foundation::setMainBundlePath("/Applications/HostApp.app/PlugIns/Share.appex");
  EXPECT_TRUE(zib::isAppExtension());
}

TEST_F(DeviceTest, OtherBundlesKeepTheirPath) {
  const id bundle = send<id>(classNamed<"NSBundle">().object(), selector<"bundleWithPath:">(),
                             zib::makeString("/tmp").raw());
  EXPECT_EQ(utf8From(send<id>(bundle, selector<"bundlePath">())), "/tmp");
}

TEST_F(DeviceTest, SystemVersionIsCompared) {
  EXPECT_TRUE(zib::isSystemAtLeast(17, 0));
  EXPECT_FALSE(zib::isSystemAtLeast(17, 1));
  sim::foundation::setSystemVersion(13, 4);
  EXPECT_TRUE(zib::isSystemAtLeast(12, 9));
  EXPECT_TRUE(zib::isSystemAtLeast(13, 4));
  EXPECT_FALSE(zib::isSystemAtLeast(13, 5));
  EXPECT_FALSE(zib::isSystemAtLeast(14, 0));
}

TEST_F(DeviceTest, ClockIsTheSystemsUntilItIsSet) {
  EXPECT_NEAR(seconds(newDate()), static_cast<double>(std::time(nullptr)), 2);
}

TEST_F(DeviceTest, EveryWayToAskForTheTimeFollowsTheClock) {
  double now = 1'700'000'000.25;
  sim::foundation::setClock([&now] { return now; });
  const id dateClass = classNamed<"NSDate">().object();
  const zib::Object made =
      zib::Object::adopted(send<id>(send<id>(dateClass, selector<"alloc">()), selector<"init">()));
  EXPECT_DOUBLE_EQ(seconds(newDate()), now);
  EXPECT_DOUBLE_EQ(seconds(made.raw()), now);
  EXPECT_DOUBLE_EQ(send<double>(dateClass, selector<"timeIntervalSinceReferenceDate">()),
                   now - referenceDate);
  EXPECT_DOUBLE_EQ(seconds(send<id>(dateClass, selector<"dateWithTimeIntervalSinceNow:">(), 60.0)),
                   now + 60);
  now += 10;
  EXPECT_DOUBLE_EQ(send<double>(made.raw(), selector<"timeIntervalSinceNow">()), -10);
}

TEST_F(DeviceTest, NoDocumentsDirectoryGivesNoURLs) {
  const id urls = urlsFor(9, 1);
  ASSERT_NE(urls, nullptr);
  EXPECT_EQ(count(urls), 0U);
}

TEST_F(DeviceTest, DocumentsDirectoryIsAFileURL) {
  sim::foundation::setDocumentsDirectory("/tmp/My Döcuments");
  const id urls = urlsFor(9, 1);
  ASSERT_EQ(count(urls), 1U);
  const id url = send<id>(urls, selector<"objectAtIndex:">(), UInteger{0});
  EXPECT_EQ(utf8From(send<id>(url, selector<"absoluteString">())),
            "file:///tmp/My%20D%C3%B6cuments/");
  const id file = send<id>(url, selector<"URLByAppendingPathComponent:">(),
                           zib::makeString("Info.plist").raw());
  EXPECT_EQ(utf8From(send<id>(file, selector<"path">())), "/tmp/My Döcuments/Info.plist");
}

TEST_F(DeviceTest, OtherDirectoriesAndDomainsAreUnknown) {
  sim::foundation::setDocumentsDirectory("/tmp");
  EXPECT_EQ(count(urlsFor(5, 1)), 0U);
  EXPECT_EQ(count(urlsFor(9, 8)), 0U);
}

TEST_F(DeviceTest, ErrorsDescribeThemselvesByFoundationsOwnKey) {
  const zib::Error error{"Domain", 7, "What went wrong", {}};
  EXPECT_EQ(zib::Error::fromNative(error.nativeError().raw()).description, "What went wrong");
}

TEST_F(DeviceTest, ErrorsWithoutADescriptionStillHaveOne) {
  const id error =
      send<id>(classNamed<"NSError">().object(), selector<"errorWithDomain:code:userInfo:">(),
               zib::makeString("Domain").raw(), long{7}, id{nullptr});
  EXPECT_FALSE(zib::Error::fromNative(error).description.empty());
}

}  // namespace
