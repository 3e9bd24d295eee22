#include "CppApp/Game.h"

#include <cstdio>

#include "PrintingCore/PrintingCore.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"

namespace {

// What the game wants to know of all that the module has to tell; the rest does nothing.
class MessagingNews final : public ZibMessagingDelegate {
 public:
  void zibMessagingDidReceiveNotification(ZibMessaging& /*messaging*/,
                                          const zib::Dictionary& userInfo) override {
    const zib::StringRef campaign = userInfo.text("pn_campaign_id");
    std::printf("app    | news of campaign %s\n", campaign ? campaign.utf8().c_str() : "(none)");
  }
};

}  // namespace

Game::Game() : messagingDelegate_(std::make_shared<MessagingNews>()) {}

void Game::launched(const zib::Application& application) {
  // The core library comes first. Yours starts itself in its own way; what counts is that its
  // configuration says that this app integrates by hand.
  installPrintingCore({.autoSwizzlingEnabled = false});

  // The game opens links to itself; all others are left to the system.
  ZibDeepLinkHandler::shared().setURLDelegate([](const zib::URL& url) {
    const std::string text = url.text().utf8();
    if (!text.starts_with("https://shop.example/")) return false;
    std::printf("app    | enters the shop at %s\n", text.c_str());
    return true;
  });

  ZibMessaging& messaging = ZibMessaging::shared();
  messaging.setDelegate(messagingDelegate_);
  messaging.configure(application);
  // Asks the user for permission, now or whenever your game would rather ask.
  messaging.registerForPush(application);
}

void Game::gotDeviceToken(std::span<const std::uint8_t> token) {
  ZibMessaging::shared().didRegisterForRemoteNotifications(token);
  std::printf("app    | device token of %zu bytes\n", token.size());
}

void Game::gotNoDeviceToken(const zib::Error& error) {
  ZibMessaging::shared().didFailToRegisterForRemoteNotifications(error);
  std::printf("app    | no device token: error %ld\n", static_cast<long>(error.code));
}

zib::objc::UInteger Game::aboutToPresent(const zib::Notification& notification) {
  return ZibMessaging::shared().willPresent(notification);
}

void Game::tapped(const zib::NotificationResponse& response) {
  ZibMessaging::shared().didReceive(response);
}

bool Game::opened(const zib::URL& url) {
  ZibDeepLinkHandler::shared().handleURL(url, "app_delegate");
  std::printf("app    | opens %s\n", url.text().utf8().c_str());
  return true;
}
