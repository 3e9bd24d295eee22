#include "ZibMessaging/ZibPayloadBuilder.h"

#include <utility>

#include "ZibMessaging/Private/NotificationEvent.h"
#include "ZibPlatform/Foundation/ISO8601.h"

namespace {

using zib::ConstantString;
using From = zib::NotificationField::From;

void setTextOf(zib::Value& value, const zib::Dictionary& userInfo, const ConstantString& key) {
  if (const zib::StringRef text = userInfo.text(key)) value.setText(zib::Utf8(text).view());
}

template <class EventType>
zib::ValueMap payloadFrom(const zib::Dictionary& userInfo, const EventType& eventType) {
  const bool isEmpty = userInfo.empty();
  zib::ValueMap payload;
  payload.reserve(zib::notificationFields.size());
  for (const zib::NotificationField& field : zib::notificationFields) {
    zib::Value& value = payload.append(field.key);
    switch (field.from) {
      case From::userInfo:
        if (!isEmpty) setTextOf(value, userInfo, field.text);
        break;
      case From::constant:
        value.setText(field.text);
        break;
      case From::eventType:
        value.setText(eventType);
        break;
      case From::nothing:
        break;
    }
  }
  return payload;
}

}  // namespace

zib::ValueMap ZibPayloadBuilder::createNotificationPayload(const zib::Dictionary& userInfo,
                                                           std::string_view eventType) {
  return payloadFrom(userInfo, eventType);
}

zib::ValueMap ZibPayloadBuilder::createNotificationPayload(const zib::Dictionary& userInfo,
                                                           const ConstantString& eventType) {
  return payloadFrom(userInfo, eventType);
}

zib::ValueMap ZibPayloadBuilder::createEventPayload(std::string_view eventName,
                                                    std::optional<zib::ValueMap> properties) {
  zib::ValueMap payload;
  payload.append("event_name", eventName);
  payload.append("timestamp", zib::currentTimeInISO8601());
  payload.append("platform_name", zib::platformName);
  if (properties) payload.append("properties", *std::move(properties));
  return payload;
}
