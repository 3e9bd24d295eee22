#include "Simulator/Host/RecordingMessagingDelegate.h"

#include "Simulator/Host/CText.h"
#include "Simulator/Host/RecordingCore.h"
#include "Simulator/Json/Values.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibC/zib.h"

namespace sim {
namespace {

// What the host keeps, as the module's context has it.
using Kept = std::weak_ptr<const void>;

void record(void* context, const char* operation, Json fields) {
  if (static_cast<const Kept*>(context)->expired()) return;
  fields["operation"] = operation;
  Timeline::shared().add("delegate", fields);
}

void didReceiveToken(void* context, zib_text token) {
  record(context, "zibMessaging(_:didReceiveToken:)", {{"token", textOf(token)}});
}

void didReceiveNotification(void* context, zib_object userInfo) {
  record(context, "zibMessaging(_:didReceiveNotification:)",
         {{"userInfo", jsonFromObject(userInfo)}});
}

void didReceiveResponse(void* context, zib_object /*response*/, zib_text action,
                        zib_object userInfo) {
  record(context, "zibMessaging(_:didReceiveNotificationResponse:)",
         {{"action", textOf(action)}, {"userInfo", jsonFromObject(userInfo)}});
}

void didFailToRegister(void* context, const zib_error* error) {
  record(context, "zibMessaging(_:didFailToRegisterWithError:)", {{"error", jsonFrom(*error)}});
}

}  // namespace

std::shared_ptr<const void> setRecordingMessagingDelegate() {
  std::shared_ptr<const void> kept = std::make_shared<const char>();
  zib_messaging_delegate delegate{};
  delegate.size = sizeof(delegate);
  delegate.context = std::make_unique<Kept>(kept).release();
  delegate.release = [](void* context) {
    std::default_delete<Kept>()(static_cast<Kept*>(context));
  };
  delegate.did_receive_token = &didReceiveToken;
  delegate.did_receive_notification = &didReceiveNotification;
  delegate.did_receive_notification_response = &didReceiveResponse;
  delegate.did_fail_to_register = &didFailToRegister;
  zib_messaging_set_delegate(&delegate);
  return kept;
}

}  // namespace sim
