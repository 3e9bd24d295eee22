// What the face says where a host in C++ acts beside it.

#include <gtest/gtest.h>

#include "Tests/Support/Device.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#import "ZibObjectiveC.h"

namespace {

TEST(ZIBHostInCxxTest, TakesThePlaceOfTheURLDelegate) {
  const test::Device device;
  __block int asked = 0;
  ZIBDeepLinkHandler.shared.urlDelegate = ^BOOL(NSURL *) {
    ++asked;
    return YES;
  };
  ZibDeepLinkHandler::shared().setURLDelegate([](const zib::URL &) { return true; });
  EXPECT_TRUE(ZIBDeepLinkHandler.shared.urlDelegate == nil);
  NSDictionary *link = @{@"link" : @"https://example.com/ours"};
  EXPECT_TRUE([ZIBDeepLinkHandler.shared handleNotificationURLFromUserInfo:link]);
  EXPECT_EQ(asked, 0);

  ZIBDeepLinkHandler.shared.urlDelegate = ^BOOL(NSURL *) {
    ++asked;
    return YES;
  };
  EXPECT_TRUE([ZIBDeepLinkHandler.shared handleNotificationURLFromUserInfo:link]);
  EXPECT_EQ(asked, 1);
}

}  // namespace
