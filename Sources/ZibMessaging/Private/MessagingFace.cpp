#include "ZibMessaging/Private/MessagingFace.h"

#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/PresentationOptions.h"
#include "ZibMessaging/Private/Recording.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibSwizzleManager.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

using objc::id;
using objc::SEL;
using objc::UInteger;

namespace {

// With automatic integration the interceptors have handled the callback already when it arrives
// here, so the entry points only complete it: otherwise each notification would be counted twice.

id init(id self, SEL) { return self; }

void willPresentNotification(id, SEL, id /*center*/, id notification, BlockLayout* completion) {
  const RecordedCall call = RecordedCall::unlessInHand(Row::willPresent, notification);
  UInteger options = 0;
  if (ZibSwizzleManager::shared().isSwizzlingEnabled()) {
    options = foregroundPresentationOptions();
  } else {
    options = ZibMessaging::shared().willPresent(*Borrowed<Notification>(notification));
  }
  Block<void(UInteger)>::call(completion, options);
}

void didReceiveNotificationResponse(id, SEL, id /*center*/, id response, BlockLayout* completion) {
  const RecordedCall call = RecordedCall::unlessInHand(Row::didReceive, response);
  if (!ZibSwizzleManager::shared().isSwizzlingEnabled()) {
    ZibMessaging::shared().didReceive(*Borrowed<NotificationResponse>(response));
  }
  Block<void()>::call(completion);
}

void didReceiveRegistrationToken(id, SEL, id /*messaging*/, id token) {
  const RecordedCall call = RecordedCall::unlessInHand(Row::fcmToken, token);
  contained("messaging:didReceiveRegistrationToken:", [&] {
    if (const auto text = StringRef::of(token)) {
      ZibMessaging::shared().setFCMToken(Utf8(text).view());
    }
  });
}

Object makeFace() noexcept {
  const Class cls =
      ClassBuilder("ZibMessaging", classNamed<"NSObject">())
          .adopting("UNUserNotificationCenterDelegate")
          .method("init", &init)
          .method("userNotificationCenter:willPresentNotification:withCompletionHandler:",
                  &willPresentNotification)
          .method("userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
                  &didReceiveNotificationResponse)
          .method("messaging:didReceiveRegistrationToken:", &didReceiveRegistrationToken)
          .registerClass();
  return create(cls);
}

}  // namespace

id messagingFace() {
  static NeverDestroyed<Object> face(&makeFace);
  return (*face).raw();
}

}  // namespace zib
