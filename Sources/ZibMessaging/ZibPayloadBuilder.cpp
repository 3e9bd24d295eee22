#include "ZibMessaging/ZibPayloadBuilder.h"

#include <string>
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
      value.setConstant(own.value());
      return;
    }
  }
  value.setText(eventType);
}

void fillFrom(const zib::Dictionary& userInfo, Value& value, const NotificationField& field) {
  if (const zib::StringRef text = userInfo.text(field.source)) {
    value.setText(zib::Utf8(text).view());
  }
}

void fillOwn(Value& value, const NotificationField& field, std::string_view eventType) {
  if (field.from == From::constant) value.setConstant(field.constant.value());
  if (field.from == From::eventType) setEventType(value, eventType);
}

}  // namespace

zib::ValueMap ZibPayloadBuilder::createNotificationPayload(const zib::Dictionary& userInfo,
                                                           std::string_view eventType) noexcept {
  constexpr const char* operation = "createNotificationPayload";
  zib::ValueMap payload;
  const NotificationField* rest = zib::notificationFields.begin();
  const auto appendRest = [&](bool isReadable) {
    while (rest != zib::notificationFields.end()) {
      const NotificationField& field = *rest++;
      Value& value = payload.append(field.key);
      if (field.from != From::userInfo) {
        fillOwn(value, field, eventType);
      } else if (isReadable) {
        fillFrom(userInfo, value, field);
      }
    }
  };
  const bool isWhole = contained(operation, [&] {
    payload.reserve(zib::notificationFields.size());
    appendRest(!userInfo.empty());
  });
  // A dictionary that breaks its promise is not asked for what is left.
  if (!isWhole) contained(operation, [&] { appendRest(false); });
  return payload;
}

zib::ValueMap ZibPayloadBuilder::createEventPayload(
    std::string_view eventName, std::optional<zib::ValueMap> properties) noexcept {
  zib::ValueMap payload;
  contained("createEventPayload", [&] {
    payload.append("event_name").setText(eventName);
    payload.append("timestamp").emplace<std::string>(zib::currentTimeInISO8601());
    payload.append("platform_name").setConstant(zib::platformName.value());
    if (properties) payload.append("properties").emplace<zib::ValueMap>(*std::move(properties));
  });
  return payload;
}

std::string_view ZibPayloadBuilder::notificationEventSchemaURI() noexcept {
  return zib::notificationEventSchemaURI();
}
