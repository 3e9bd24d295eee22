#include "Simulator/Host/RecordingMessagingDelegate.h"

#include "Simulator/Json/Values.h"
#include "Simulator/Timeline/Timeline.h"

namespace sim {
namespace {

void record(const char* operation, Json fields) {
  fields["operation"] = operation;
  Timeline::shared().add("delegate", fields);
}

}  // namespace

void RecordingMessagingDelegate::didReceiveToken(ZibMessaging& /*messaging*/,
                                                 std::string_view token) {
  record("zibMessaging(_:didReceiveToken:)", {{"token", token}});
}

void RecordingMessagingDelegate::didReceiveNotification(ZibMessaging& /*messaging*/,
                                                        const zib::Dictionary& userInfo) {
  record("zibMessaging(_:didReceiveNotification:)", {{"userInfo", jsonFrom(userInfo.values())}});
}

void RecordingMessagingDelegate::didReceiveNotificationResponse(
    ZibMessaging& /*messaging*/, const zib::NotificationResponse& response) {
  record("zibMessaging(_:didReceiveNotificationResponse:)",
         {{"action", response.actionIdentifier()},
          {"userInfo", jsonFrom(response.notification().userInfo().values())}});
}

void RecordingMessagingDelegate::didFailToRegisterWithError(ZibMessaging& /*messaging*/,
                                                            const zib::Error& error) {
  record("zibMessaging(_:didFailToRegisterWithError:)", {{"error", jsonFrom(error)}});
}

}  // namespace sim
