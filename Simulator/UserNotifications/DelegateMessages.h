// The messages that the notification centre sends to its delegate.

#pragma once

#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim::usernotifications {

using PresentationCompletion = zib::Block<void(zib::objc::UInteger)>;
using ResponseCompletion = zib::Block<void()>;

inline constexpr zib::FixedString willPresent =
    "userNotificationCenter:willPresentNotification:withCompletionHandler:";
inline constexpr zib::FixedString didReceive =
    "userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:";

inline void sendNotification(zib::objc::id delegate, zib::objc::id center,
                             zib::objc::id notification, const PresentationCompletion& completion) {
  zib::send<void>(delegate, zib::selector<willPresent>(), center, notification, completion.raw());
}

inline void sendResponse(zib::objc::id delegate, zib::objc::id center, zib::objc::id response,
                         const ResponseCompletion& completion) {
  zib::send<void>(delegate, zib::selector<didReceive>(), center, response, completion.raw());
}

}  // namespace sim::usernotifications
