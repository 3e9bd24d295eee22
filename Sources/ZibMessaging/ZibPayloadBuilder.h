// The shapes of analytics events.

#pragma once

#include <optional>
#include <string_view>

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Value.h"

// Any thread. No operation throws: what goes wrong is reported, and fields that could not be read
// are missing or null.
class ZibPayloadBuilder {
 public:
  ZibPayloadBuilder() = delete;

  // The event of a notification: always the same fourteen keys. A field whose source in `userInfo`
  // is missing or no string holds the null marker.
  static zib::ValueMap createNotificationPayload(const zib::Dictionary& userInfo,
                                                 std::string_view eventType) noexcept;

  // A named event of the host's own, stamped with the current time. The properties stay whole under
  // one key, which is missing without them.
  static zib::ValueMap createEventPayload(
      std::string_view eventName, std::optional<zib::ValueMap> properties = std::nullopt) noexcept;

  // The schema that the module hands notification events to the core with. Lives as long as the
  // process.
  static std::string_view notificationEventSchemaURI() noexcept;
};
