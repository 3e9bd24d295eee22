// The event of a notification: its types, its fields and where each comes from, and what tells the
// notification that no event reports.

#pragma once

#include <array>
#include <string_view>

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/FixedString.h"

namespace zib {

// A text that is made once, and shared by all events that carry it.
struct SharedText {
  std::string_view text = {};
  const Value& (*value)() = nullptr;
};
template <FixedString Text>
inline constexpr SharedText sharedText{Text.view(), &Value::constant<Text>};

inline constexpr SharedText deliveredEvent = sharedText<"notification-delivered">;
inline constexpr SharedText clickedEvent = sharedText<"notification-clicked">;

struct NotificationField {
  enum class From {
    userInfo,   // the string under `source`, or the null marker
    constant,   // `constant`
    eventType,  // the event type
    nothing,    // a placeholder of the event's schema that no notification fills
  };

  std::string_view key;
  From from;
  ConstantString source = {};
  SharedText constant = {};
};

inline constexpr SharedText platformName = sharedText<"ios">;

inline constexpr std::array<NotificationField, 14> notificationFields{{
    {"pn_campaign_id", NotificationField::From::userInfo, constantString<"pn_campaign_id">},
    {"ma_campaign_id", NotificationField::From::userInfo, constantString<"ma_campaign_id">},
    {"node_id", NotificationField::From::userInfo, constantString<"node_id">},
    {"ma_channel", NotificationField::From::constant, {}, sharedText<"push">},
    {"user_id", NotificationField::From::nothing},
    {"event_type", NotificationField::From::eventType},
    {"club", NotificationField::From::userInfo, constantString<"club">},
    {"environment", NotificationField::From::userInfo, constantString<"environment">},
    {"customer_key", NotificationField::From::userInfo, constantString<"customer_key">},
    {"reasons", NotificationField::From::nothing},
    {"campaign_source", NotificationField::From::constant, {}, sharedText<"PUSH-NOTIFICATION">},
    {"platform_name", NotificationField::From::constant, {}, platformName},
    {"click_url", NotificationField::From::userInfo, constantString<"click_url">},
    // Filled from "_id" and from no other key.
    {"domain_userid", NotificationField::From::userInfo, constantString<"_id">},
}};

// By which a campaign tool marks what it sends for a try.
inline constexpr ConstantString notificationTypeKey = constantString<"pn_type">;
inline constexpr std::string_view testNotificationType = "PUSH-NOTIFICATION-SEND-TEST";

inline bool isTestNotification(const Dictionary& userInfo) {
  const StringRef type = userInfo.text(notificationTypeKey);
  return type && type.equals(testNotificationType);
}

}  // namespace zib
