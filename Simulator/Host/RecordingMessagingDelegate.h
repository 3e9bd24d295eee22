// The host's messaging delegate: it records what the module tells it.

#pragma once

#include "ZibMessaging/ZibMessagingDelegate.h"

namespace sim {

class RecordingMessagingDelegate final : public ZibMessagingDelegate {
 public:
  void zibMessagingDidReceiveToken(ZibMessaging& messaging, std::string_view token) override;
  void zibMessagingDidReceiveNotification(ZibMessaging& messaging,
                                          const zib::Dictionary& userInfo) override;
  void zibMessagingDidReceiveNotificationResponse(
      ZibMessaging& messaging, const zib::NotificationResponse& response) override;
  void zibMessagingDidFailToRegisterWithError(ZibMessaging& messaging,
                                              const zib::Error& error) override;
};

}  // namespace sim
