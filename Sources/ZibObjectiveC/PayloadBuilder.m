// A toolchain for Swift on Linux builds the package without Foundation.
#if __has_include(<UIKit/UIKit.h>)

#include "Private/Ownership.h"

@implementation ZIBPayloadBuilder

+ (NSDictionary *)createNotificationPayloadFromUserInfo:(NSDictionary *)userInfo
                                              eventType:(NSString *)eventType {
  const zib_text type = ZIBTextCopy(eventType);
  NSDictionary *const payload =
      ZIB_AUTORELEASED(zib_payload_builder_create_notification_payload(userInfo, type));
  zib_text_free(type);
  return payload == nil ? @{} : payload;
}

+ (NSDictionary *)createEventPayloadWithEventName:(NSString *)eventName
                                       properties:(NSDictionary *)properties {
  const zib_text name = ZIBTextCopy(eventName);
  NSDictionary *const payload =
      ZIB_AUTORELEASED(zib_payload_builder_create_event_payload(name, properties));
  zib_text_free(name);
  return payload == nil ? @{} : payload;
}

@end

#endif
