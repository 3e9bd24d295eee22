#include "ZibMessaging/ZibPayloadBuilder.h"

#include <array>
#include <utility>

#include "ZibPlatform/Foundation/ISO8601.h"

namespace {

using zib::ConstantString;
using zib::constantString;

constexpr ConstantString platformName = constantString<"ios">;

enum class From {
  userInfo,   // the string under `text`, or the null marker
  constant,   // `text` itself
  eventType,  // the event type
  nothing,    // a placeholder of the event's schema that no notification fills
};

struct Field {
  std::string_view key;
  From from;
  ConstantString text = constantString<"">;
};

constexpr std::array<Field, 14> fields{{
    {"pn_campaign_id", From::userInfo, constantString<"pn_campaign_id">},
    {"ma_campaign_id", From::userInfo, constantString<"ma_campaign_id">},
    {"node_id", From::userInfo, constantString<"node_id">},
    {"ma_channel", From::constant, constantString<"push">},
    {"user_id", From::nothing},
    {"event_type", From::eventType},
    {"club", From::userInfo, constantString<"club">},
    {"environment", From::userInfo, constantString<"environment">},
    {"customer_key", From::userInfo, constantString<"customer_key">},
    {"reasons", From::nothing},
    {"campaign_source", From::constant, constantString<"PUSH-NOTIFICATION">},
    {"platform_name", From::constant, platformName},
    {"click_url", From::userInfo, constantString<"click_url">},
    // Filled from "_id" and from no other key.
    {"domain_userid", From::userInfo, constantString<"_id">},
}};

void setTextOf(zib::Value& value, const zib::Dictionary& userInfo, const ConstantString& key) {
  if (const zib::StringRef text = userInfo.text(key)) value.setText(zib::Utf8(text).view());
}

template <class EventType>
zib::ValueMap payloadFrom(const zib::Dictionary& userInfo, const EventType& eventType) {
  const bool isEmpty = userInfo.empty();
  zib::ValueMap payload;
  payload.reserve(fields.size());
  for (const Field& field : fields) {
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
  payload.append("platform_name", platformName);
  if (properties) payload.append("properties", *std::move(properties));
  return payload;
}
