// A messaging delegate in C++ that records what the module tells it, as the simulated host's does.

#pragma once

#include "ZibMessaging/ZibMessagingDelegate.h"

namespace test {

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

}  // namespace test
