// An app in C++, such as a game, that integrates by hand: its engine tells it what the system said,
// and it forwards that to the messaging module.

#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "ZibMessaging/ZibMessagingDelegate.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/UIKit/Application.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

class Game {
 public:
  Game();

  void launched(const zib::Application& application);
  void gotDeviceToken(std::span<const std::uint8_t> token);
  void gotNoDeviceToken(const zib::Error& error);
  // How to show the notification: UNNotificationPresentationOptions.
  zib::objc::UInteger aboutToPresent(const zib::Notification& notification);
  void tapped(const zib::NotificationResponse& response);
  bool opened(const zib::URL& url);

 private:
  // The module holds its delegate weakly, so the game keeps it.
  std::shared_ptr<ZibMessagingDelegate> messagingDelegate_;
};
