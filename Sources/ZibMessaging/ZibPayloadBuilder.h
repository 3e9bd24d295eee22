// The shapes of analytics events.

#pragma once

#include <optional>
#include <string_view>

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Value.h"

class ZibPayloadBuilder {
 public:
  ZibPayloadBuilder() = delete;

  // The event of a notification: always the same fourteen keys. A field whose source in `userInfo`
  // is missing or no string holds the null marker. Any thread.
  static zib::ValueMap createNotificationPayload(const zib::Dictionary& userInfo,
                                                 std::string_view eventType);
  static zib::ValueMap createNotificationPayload(const zib::Dictionary& userInfo,
                                                 const zib::ConstantString& eventType);

  // A named event of the host's own, stamped with the current time. The properties stay whole under
  // one key, which is missing without them. Any thread.
  static zib::ValueMap createEventPayload(std::string_view eventName,
                                          std::optional<zib::ValueMap> properties = std::nullopt);
};
