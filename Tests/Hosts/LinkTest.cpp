// Links as campaign tools write them.

#include <optional>

#include "HostTest.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"

namespace hosts {
namespace {

class LinkTest : public HostTest {
 protected:
  // What the host's URL delegate gets for the link, if anything.
  std::optional<std::string> opened(const char* link) {
    std::optional<std::string> url;
    ZibDeepLinkHandler::shared().setURLDelegate([&](const zib::URL& each) {
      url = each.text().utf8();
      return true;
    });
    ZibDeepLinkHandler::shared().handleNotificationURL(zib::Dictionary::from({{"url", link}}));
    return url;
  }
};

TEST_F(LinkTest, BracketsInTheQueryAreEncoded) {
  EXPECT_EQ(opened("https://shop.example/?ids[]=1&ids[]=2"),
            "https://shop.example/?ids%5B%5D=1&ids%5B%5D=2");
  EXPECT_EQ(
      device_.countOfLine("ZibDeepLinkHandler: Found URL - https://shop.example/?ids[]=1&ids[]=2"),
      1U);
}

TEST_F(LinkTest, BracketsInTheFragmentAreEncoded) {
  EXPECT_EQ(opened("app://open#a[0]"), "app://open#a%5B0%5D");
}

TEST_F(LinkTest, BracketsOfAnAddressStay) {
  EXPECT_EQ(opened("http://[::1]/?a[]=1"), "http://[::1]/?a%5B%5D=1");
}

TEST_F(LinkTest, TheHostsDelegateIsThereUntilItIsTakenBack) {
  ZibDeepLinkHandler& handler = ZibDeepLinkHandler::shared();
  handler.setURLDelegate([](const zib::URL&) { return true; });
  EXPECT_TRUE(handler.hasURLDelegate());
  EXPECT_TRUE(handler.urlDelegate());
  handler.setURLDelegate({});
  EXPECT_FALSE(handler.hasURLDelegate());
  EXPECT_FALSE(handler.urlDelegate());
}

}  // namespace
}  // namespace hosts
