#include "ZibMessaging/ZibPayloadBuilder.h"

#include <utility>

#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/EventSchema.h"
#include "ZibMessaging/Private/NotificationEvent.h"
#include "ZibPlatform/Foundation/ISO8601.h"

using zib::contained;
using zib::NotificationField;
using zib::Value;

namespace {

using From = NotificationField::From;

// The module's own events are of two types, whose texts are shared.
void setEventType(Value& value, std::string_view eventType) {
  for (const zib::SharedText& own : {zib::deliveredEvent, zib::clickedEvent}) {
    if (eventType == own.text) {
      value = own.value();
      return;
    }
  }
  value.setText(eventType);
}

void fill(Value& value, const NotificationField& field, const zib::Dictionary& userInfo,
          std::string_view eventType) {
  switch (field.from) {
    case From::userInfo:
      if (const zib::StringRef text = userInfo.text(field.source)) {
        value.setText(zib::Utf8(text).view());
      }
      break;
    case From::constant:
      value = field.constant.value();
      break;
    case From::eventType:
      setEventType(value, eventType);
      break;
    case From::nothing:
      break;
  }
}

}  // namespace

zib::ValueMap ZibPayloadBuilder::createNotificationPayload(const zib::Dictionary& userInfo,
                                                           std::string_view eventType) noexcept {
  zib::ValueMap payload;
  contained("createNotificationPayload", [&] {
    // Of a dictionary that breaks its promise the rest is not asked for.
    bool isReadable =
        zib::containedOr(false, "createNotificationPayload", [&] { return !userInfo.empty(); });
    payload.reserve(zib::notificationFields.size());
    for (const NotificationField& field : zib::notificationFields) {
      Value& value = payload.append(field.key);
      if (field.from != From::userInfo) {
        fill(value, field, userInfo, eventType);
      } else if (isReadable) {
        isReadable = contained("createNotificationPayload",
                               [&] { fill(value, field, userInfo, eventType); });
      }
    }
  });
  return payload;
}

zib::ValueMap ZibPayloadBuilder::createEventPayload(
    std::string_view eventName, std::optional<zib::ValueMap> properties) noexcept {
  zib::ValueMap payload;
  contained("createEventPayload", [&] {
    payload.append("event_name", eventName);
    payload.append("timestamp", zib::currentTimeInISO8601());
    payload.append("platform_name", zib::platformName.value());
    if (properties) payload.append("properties", *std::move(properties));
  });
  return payload;
}

std::string_view ZibPayloadBuilder::notificationEventSchemaURI() noexcept {
  return zib::notificationEventSchemaURI();
}
