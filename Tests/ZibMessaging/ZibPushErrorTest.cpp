#include "Tests/Support/PlatformTest.h"
#include "Tests/Support/RowName.h"
#include "ZibMessaging/ZibPushError.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::objc::id;

struct Expected {
  const char* name;
  ZibPushError error;
  std::int64_t code;
  const char* description;
};

constexpr Expected all[] = {
    {"InvalidURL", ZibPushError::invalidURL, 0, "Invalid push configuration URL"},
    {"NoData", ZibPushError::noData, 1, "No data received from server"},
    {"InvalidPlist", ZibPushError::invalidPlist, 2, "Invalid Firebase plist format"},
    {"FirebaseNotConfigured", ZibPushError::firebaseNotConfigured, 3, "Firebase is not configured"},
};

class ZibPushErrorTest : public test::PlatformTest, public testing::WithParamInterface<Expected> {};

TEST_P(ZibPushErrorTest, IsOneByteThatHoldsTheIndex) {
  static_assert(sizeof(ZibPushError) == 1);
  EXPECT_EQ(static_cast<std::int64_t>(GetParam().error), GetParam().code);
}

TEST_P(ZibPushErrorTest, DescribesItself) {
  EXPECT_EQ(GetParam().error.errorDescription(), GetParam().description);
}

TEST_P(ZibPushErrorTest, HashesItsIndexAsAWord) {
  EXPECT_EQ(std::hash<ZibPushError>()(GetParam().error),
            std::hash<std::size_t>()(static_cast<std::size_t>(GetParam().code)));
}

TEST_P(ZibPushErrorTest, EqualsOnlyItself) {
  for (const Expected& other : all) {
    EXPECT_EQ(GetParam().error == other.error, GetParam().code == other.code);
  }
}

TEST_P(ZibPushErrorTest, BecomesAGeneralErrorAndComesBack) {
  const zib::Error error = zib::errorFrom(GetParam().error);
  EXPECT_EQ(error.domain, "ZibMessaging.ZibPushError");
  EXPECT_EQ(error.code, GetParam().code);
  EXPECT_EQ(error.description, GetParam().description);
  EXPECT_EQ(zib::pushErrorFrom(error), GetParam().error);
}

TEST_P(ZibPushErrorTest, BecomesAPlatformErrorAndComesBack) {
  const zib::Object native = zib::errorFrom(GetParam().error).nativeError();
  const zib::Error error = zib::Error::fromNative(native.raw());
  EXPECT_EQ(error.domain, "ZibMessaging.ZibPushError");
  EXPECT_EQ(error.code, GetParam().code);
  EXPECT_EQ(zib::pushErrorFrom(error), GetParam().error);
}

TEST_P(ZibPushErrorTest, CarriesNothingButTheDescription) {
  const zib::Object native = zib::errorFrom(GetParam().error).nativeError();
  const auto userInfo =
      zib::Dictionary::retained(zib::send<id>(native.raw(), zib::selector<"userInfo">()));
  EXPECT_EQ(*userInfo.values(),
            (zib::ValueMap{{"NSLocalizedDescription", GetParam().description}}));
  EXPECT_EQ(zib::send<id>(native.raw(), zib::selector<"localizedFailureReason">()), nullptr);
  EXPECT_EQ(zib::send<id>(native.raw(), zib::selector<"localizedRecoverySuggestion">()), nullptr);
}

INSTANTIATE_TEST_SUITE_P(All, ZibPushErrorTest, testing::ValuesIn(all), test::rowName);

TEST(ZibPushErrorDescriptionTest, IsThereForACodeThatNoCaseHas) {
  EXPECT_EQ(ZibPushError(static_cast<ZibPushError::Code>(4)).errorDescription(),
            "Unknown push configuration error");
  EXPECT_EQ(ZibPushError(static_cast<ZibPushError::Code>(255)).errorDescription(),
            "Unknown push configuration error");
}

TEST(ZibPushErrorHashTest, DiffersBetweenCases) {
  std::set<std::size_t> hashes;
  for (const Expected& expected : all) hashes.insert(std::hash<ZibPushError>()(expected.error));
  EXPECT_EQ(hashes.size(), std::size(all));
}

TEST(ZibPushErrorFromErrorTest, IsNoneForAnotherDomain) {
  EXPECT_EQ(zib::pushErrorFrom({"NSURLErrorDomain", 0, "", {}}), std::nullopt);
  EXPECT_EQ(zib::pushErrorFrom({"ZibMessaging", 1, "", {}}), std::nullopt);
}

TEST(ZibPushErrorFromErrorTest, IsNoneForACodeThatNoCaseHas) {
  EXPECT_EQ(zib::pushErrorFrom({"ZibMessaging.ZibPushError", -1, "", {}}), std::nullopt);
  EXPECT_EQ(zib::pushErrorFrom({"ZibMessaging.ZibPushError", 4, "", {}}), std::nullopt);
  EXPECT_EQ(zib::pushErrorFrom({"ZibMessaging.ZibPushError", 256, "", {}}), std::nullopt);
}

}  // namespace
