// Tokens arrive on any thread while others read the fields.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "Tests/Support/Device.h"
#include "Tests/Support/Host.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibSwizzleManager.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace {

constexpr int writerCount = 8;
constexpr int readerCount = 4;
constexpr int roundCount = 200;
constexpr std::size_t tokenLength = 100;

// A token whose characters are all the same, so that a mixture of two shows.
std::string tokenOf(int writer) {
  return std::string(tokenLength, static_cast<char>('a' + writer));
}

bool isWhole(std::string_view token) {
  return token.size() == tokenLength &&
         token.find_first_not_of(token.front()) == std::string_view::npos;
}

bool isWhole(const zib::Bytes& token) {
  return token.size() == tokenLength &&
         std::all_of(token.begin(), token.end(),
                     [&](std::uint8_t byte) { return byte == token.front(); });
}

class WatchingDelegate final : public ZibMessagingDelegate {
 public:
  void zibMessagingDidReceiveToken(ZibMessaging& /*messaging*/, std::string_view token) override {
    ++tokens;
    broken += isWhole(token) ? 0 : 1;
  }
  std::atomic<int> tokens = 0;
  std::atomic<int> broken = 0;
};

TEST(TokenConcurrencyTest, ReadersSeeWholeTokensWhileOthersWrite) {
  const test::Device device;
  const auto delegate = std::make_shared<WatchingDelegate>();
  ZibMessaging& messaging = ZibMessaging::shared();
  messaging.setDelegate(delegate);
  messaging.setPushToken(zib::Bytes(tokenLength, 1));
  messaging.setFCMToken(tokenOf(0));

  std::atomic<bool> isWriting = true;
  std::atomic<int> broken = 0;
  std::vector<std::thread> readers;
  for (int reader = 0; reader < readerCount; ++reader) {
    readers.emplace_back([&] {
      const zib::AutoreleasePool pool;
      while (isWriting) {
        const auto fcmToken = messaging.fcmToken();
        const auto apnsToken = messaging.apnsToken();
        if (!fcmToken || !isWhole(*fcmToken)) ++broken;
        if (!apnsToken || !isWhole(*apnsToken)) ++broken;
        if (messaging.isPushEnabled()) ++broken;
        if (messaging.delegate() != delegate) ++broken;
        if (!ZibSwizzleManager::shared().isSwizzlingEnabled()) ++broken;
      }
    });
  }
  std::vector<std::thread> writers;
  for (int writer = 0; writer < writerCount; ++writer) {
    writers.emplace_back([&, writer] {
      const zib::AutoreleasePool pool;
      const zib::Bytes deviceToken(tokenLength, static_cast<std::uint8_t>(writer));
      for (int round = 0; round < roundCount; ++round) {
        messaging.setFCMToken(tokenOf(writer));
        messaging.setPushToken(deviceToken);
        messaging.setDelegate(delegate);
      }
    });
  }
  for (std::thread& writer : writers) writer.join();
  isWriting = false;
  for (std::thread& reader : readers) reader.join();

  EXPECT_EQ(broken, 0);
  EXPECT_EQ(delegate->broken, 0);
  EXPECT_EQ(delegate->tokens, writerCount * roundCount + 1);
  EXPECT_EQ(device.fields("core", "token").size(), std::size_t{writerCount * roundCount + 1});
  EXPECT_TRUE(device.errorLines().empty());
}

TEST(TokenConcurrencyTest, TheURLCallbackMayBeSetWhileLinksAreHandled) {
  const test::Device device;
  std::atomic<bool> isSetting = true;
  std::atomic<int> asked = 0;
  std::thread setter([&] {
    for (int round = 0; round < roundCount; ++round) {
      ZibDeepLinkHandler::shared().setURLDelegate(
          [&asked, state = std::string(tokenLength, 'x')](const zib::URL&) {
            asked += isWhole(state) ? 1 : 0;
            return true;
          });
    }
    isSetting = false;
  });
  const zib::Dictionary userInfo = zib::Dictionary::from({{"url", "https://example.com/"}});
  int handled = 0;
  while (isSetting) {
    const zib::AutoreleasePool pool;
    handled += ZibDeepLinkHandler::shared().handleNotificationURL(userInfo) ? 0 : 1;
  }
  setter.join();
  EXPECT_EQ(handled, 0) << "a link was neither handled nor opened";
  EXPECT_TRUE(ZibDeepLinkHandler::shared().handleNotificationURL(userInfo));
  EXPECT_GE(asked, 1);
  EXPECT_TRUE(device.errorLines().empty());
}

// Replaced while it runs: the running one keeps what it holds.
TEST(TokenConcurrencyTest, TheURLCallbackMayTakeItselfBack) {
  const test::Device device;
  std::string seen;
  ZibDeepLinkHandler::shared().setURLDelegate(
      [&seen, state = std::string(tokenLength, 'x')](const zib::URL&) {
        ZibDeepLinkHandler::shared().setURLDelegate({});
        seen = state;
        return true;
      });
  const zib::Dictionary userInfo = zib::Dictionary::from({{"url", "https://example.com/"}});
  EXPECT_TRUE(ZibDeepLinkHandler::shared().handleNotificationURL(userInfo));
  EXPECT_TRUE(isWhole(seen));
  device.drain();
  EXPECT_EQ(device.countOfLine("ZibDeepLinkHandler: Handled by urlDelegate"), 1U);
  EXPECT_TRUE(ZibDeepLinkHandler::shared().handleNotificationURL(userInfo));
  EXPECT_EQ(device.countOfLine("ZibDeepLinkHandler: Opening URL - https://example.com/"), 1U);
}

}  // namespace
