#include "ZibMessaging/ZibPayloadBuilder.h"

#include <array>
#include <utility>

#include "Platform/ISO8601.h"

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

zib::Value valueOf(const Field& field, const zib::Dictionary& userInfo, bool isEmpty,
                   std::string_view eventType) {
  switch (field.from) {
    case From::userInfo:
      if (!isEmpty) {
        if (auto text = userInfo.string(field.text)) return *std::move(text);
      }
      return zib::Null{};
    case From::constant:
      return field.text.text;
    case From::eventType:
      return eventType;
    case From::nothing:
      return zib::Null{};
  }
  return zib::Null{};
}

}  // namespace

zib::ValueMap ZibPayloadBuilder::createNotificationPayload(const zib::Dictionary& userInfo,
                                                           std::string_view eventType) {
  const bool isEmpty = userInfo.empty();
  zib::ValueMap payload;
  payload.reserve(fields.size());
  for (const Field& field : fields) {
    payload.append(field.key, valueOf(field, userInfo, isEmpty, eventType));
  }
  return payload;
}

zib::ValueMap ZibPayloadBuilder::createEventPayload(std::string_view eventName,
                                                    std::optional<zib::ValueMap> properties) {
  zib::ValueMap payload;
  payload.append("event_name", eventName);
  payload.append("timestamp", zib::currentTimeInISO8601());
  payload.append("platform_name", platformName.text);
  if (properties) payload.append("properties", *std::move(properties));
  return payload;
}
