// What a host can learn from the messaging module.

#pragma once

#include <string_view>

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

class ZibMessaging;

// The host implements what it wants to know; the rest does nothing. The module holds the delegate
// weakly and calls it on the thread of the operation that has the news, after its own logging and
// tracking of the same event. What an implementation throws is reported to the core's logger and
// goes no further.
class ZibMessagingDelegate {
 public:
  ZibMessagingDelegate() = default;
  ZibMessagingDelegate(const ZibMessagingDelegate&) = delete;
  ZibMessagingDelegate& operator=(const ZibMessagingDelegate&) = delete;
  virtual ~ZibMessagingDelegate() = default;

  // An FCM token was accepted; `token` is whole. Any thread.
  virtual void zibMessagingDidReceiveToken(ZibMessaging& /*messaging*/,
                                           std::string_view /*token*/) {}
  // A notification is about to be presented in the foreground, test notifications included.
  virtual void zibMessagingDidReceiveNotification(ZibMessaging& /*messaging*/,
                                                  const zib::Dictionary& /*userInfo*/) {}
  // The user acted on a notification, test notifications included.
  virtual void zibMessagingDidReceiveNotificationResponse(
      ZibMessaging& /*messaging*/, const zib::NotificationResponse& /*response*/) {}
  // Registration failed, or the request for permission ended with an error.
  virtual void zibMessagingDidFailToRegisterWithError(ZibMessaging& /*messaging*/,
                                                      const zib::Error& /*error*/) {}
};
