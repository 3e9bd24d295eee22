#include "Tests/Support/RecordingMessagingDelegate.h"

#include "Simulator/Json/Values.h"
#include "Simulator/Timeline/Timeline.h"

namespace test {
namespace {

void record(const char* operation, sim::Json fields) {
  fields["operation"] = operation;
  sim::Timeline::shared().add("delegate", fields);
}

}  // namespace

void RecordingMessagingDelegate::zibMessagingDidReceiveToken(ZibMessaging& /*messaging*/,
                                                             std::string_view token) {
  record("zibMessaging(_:didReceiveToken:)", {{"token", token}});
}

void RecordingMessagingDelegate::zibMessagingDidReceiveNotification(
    ZibMessaging& /*messaging*/, const zib::Dictionary& userInfo) {
  record("zibMessaging(_:didReceiveNotification:)",
         {{"userInfo", sim::jsonFrom(sim::valuesOf(userInfo))}});
}

void RecordingMessagingDelegate::zibMessagingDidReceiveNotificationResponse(
    ZibMessaging& /*messaging*/, const zib::NotificationResponse& response) {
  record("zibMessaging(_:didReceiveNotificationResponse:)",
         {{"action", response.actionIdentifier().utf8()},
          {"userInfo", sim::jsonFrom(sim::valuesOf(response.userInfo()))}});
}

void RecordingMessagingDelegate::zibMessagingDidFailToRegisterWithError(ZibMessaging& /*messaging*/,
                                                                        const zib::Error& error) {
  record("zibMessaging(_:didFailToRegisterWithError:)", {{"error", sim::jsonFrom(error)}});
}

}  // namespace test
