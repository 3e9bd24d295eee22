// A messaging delegate in C++ that records what the module tells it, as the simulated host's does.

#pragma once

#include "ZibMessaging/ZibMessagingDelegate.h"

namespace test {

class RecordingMessagingDelegate final : public ZibMessagingDelegate {
 public:
  void didReceiveToken(ZibMessaging& messaging, std::string_view token) override;
  void didReceiveNotification(ZibMessaging& messaging, const zib::Dictionary& userInfo) override;
  void didReceiveNotificationResponse(ZibMessaging& messaging,
                                      const zib::NotificationResponse& response) override;
  void didFailToRegisterWithError(ZibMessaging& messaging, const zib::Error& error) override;
};

}  // namespace test
