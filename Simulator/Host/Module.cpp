#include "Simulator/Host/Module.h"

#include "Simulator/Host/CText.h"
#include "Simulator/Host/RecordingMessagingDelegate.h"
#include "Simulator/Json/Values.h"
#include "Simulator/Seam/zib_testing.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibC/zib.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace sim {
namespace {

template <class T>
T& contextOf(void* context) {
  return *static_cast<T*>(context);
}
template <class T>
void release(void* context) {
  std::default_delete<T>()(static_cast<T*>(context));
}
template <class T>
void* contextFrom(T value) {
  return std::make_unique<T>(std::move(value)).release();
}

struct Flow {
  std::function<void(const Json&)> configured;
  std::function<void(bool)> completion;
};

Json jsonTaken(zib_object created) { return jsonFromObject(zib::Object::adopted(created).raw()); }

Json textOrNull(zib_text text) { return text.bytes == nullptr ? Json() : Json(textOf(text)); }

std::string_view nameOfState(std::int64_t state) {
  switch (state) {
    case ZIB_INTEGRATION_SWAPPED:
      return "swapped";
    case ZIB_INTEGRATION_ADDED:
      return "added";
    case ZIB_INTEGRATION_FORWARDING:
      return "forwarding";
    default:
      return "none";
  }
}

Json chainOf(const zib_integration_report* report, std::size_t row, std::size_t count) {
  Json chain = Json::array();
  for (std::size_t index = 0; index < count; ++index) {
    zib_integration_function function{};
    function.size = sizeof(function);
    zib_integration_report_get_function(report, row, index, &function);
    chain.push_back(
        {{"image", textOrNull(function.image)}, {"symbol", textOrNull(function.symbol)}});
  }
  return chain;
}

Json rowOf(const zib_integration_report* report, std::size_t index) {
  zib_integration_row row{};
  row.size = sizeof(row);
  zib_integration_report_get_row(report, index, &row);
  Json remarks = Json::array();
  for (std::size_t remark = 0; remark < row.remark_count; ++remark) {
    remarks.push_back(textOf(zib_integration_report_remark(report, index, remark)));
  }
  return {{"method", textOf(row.method)},
          {"class", textOrNull(row.delegate_class)},
          {"state", nameOfState(row.state)},
          {"chain", chainOf(report, index, row.function_count)},
          {"remarks", remarks}};
}

}  // namespace

void Module::setDelegate() { delegate_ = setRecordingMessagingDelegate(); }

void Module::letDelegateGo() { delegate_.reset(); }

void Module::setURLDelegate(std::optional<bool> answer) {
  if (!answer) {
    zib_deep_link_handler_set_url_delegate(nullptr, nullptr, nullptr);
    return;
  }
  zib_deep_link_handler_set_url_delegate(
      [](void* context, zib_object /*url*/, zib_text text) {
        const bool handled = contextOf<bool>(context);
        Timeline::shared().add("urlDelegate", {{"url", textOf(text)}, {"handled", handled}});
        return handled;
      },
      contextFrom(*answer), &release<bool>);
}

void Module::setSwizzlingEnabled(bool isEnabled) { zib_testing_set_swizzling_enabled(isEnabled); }

void Module::configure() { zib_messaging_configure(uikit::application()); }

void Module::registerForPush() { zib_messaging_register_for_push(uikit::application()); }

void Module::registerForPushSimple() {
  zib_push_config_register_for_push_simple(uikit::application());
}

void Module::configurePush(const std::optional<std::string>& endpoint,
                           const std::function<void(const Json& config)>& configured,
                           const std::function<void(bool isRegistering)>& completion) {
  const zib_push_config_completion complete = [](void* context, bool started) {
    contextOf<Flow>(context).completion(started);
  };
  zib_push_config_configure_push(
      uikit::application(), endpoint ? cText(*endpoint) : zib_text{},
      [](void* context, zib_object config) {
        contextOf<Flow>(context).configured(jsonFromObject(config));
      },
      completion ? complete : nullptr, contextFrom(Flow{configured, completion}), &release<Flow>);
}

void Module::setupAutoSwizzling() { zib_testing_setup_auto_swizzling(); }

void Module::setupAsNotificationDelegate() { zib_messaging_setup_as_notification_delegate(); }

void Module::ensureFirebaseMessagingDelegate() {
  zib_messaging_ensure_firebase_messaging_delegate();
}

void Module::didRegisterForRemoteNotifications(std::span<const std::uint8_t> token) {
  zib_messaging_did_register_for_remote_notifications(zib::makeData(token).raw());
}

void Module::didFailToRegisterForRemoteNotifications(const std::optional<zib::Error>& error) {
  const zib::Object native = error ? error->nativeError() : zib::Object();
  zib_messaging_did_fail_to_register_for_remote_notifications(native.raw());
}

void Module::setPushToken(std::span<const std::uint8_t> token) {
  zib_messaging_set_push_token(zib::makeData(token).raw());
}

void Module::setFCMToken(const std::string& token) { zib_messaging_set_fcm_token(cText(token)); }

void Module::didReceiveRegistrationToken(const std::string& token) {
  zib_messaging_did_receive_registration_token(cText(token));
}

zib::objc::UInteger Module::willPresent(const zib::ValueMap& userInfo) {
  return zib_messaging_will_present(usernotifications::makeNotification(userInfo).raw());
}

void Module::didReceive(const zib::ValueMap& userInfo, const std::string& action) {
  zib_messaging_did_receive(usernotifications::makeResponse(userInfo, action).raw());
}

void Module::trackNotificationReceived(const zib::ValueMap& userInfo) {
  zib_messaging_track_notification_received(zib::objectFrom(userInfo).raw());
}

void Module::trackNotificationOpened(const zib::ValueMap& userInfo) {
  zib_messaging_track_notification_opened(zib::objectFrom(userInfo).raw());
}

bool Module::handleNotificationURL(const zib::ValueMap& userInfo) {
  return zib_deep_link_handler_handle_notification_url(zib::objectFrom(userInfo).raw());
}

bool Module::handleURL(const std::string& url, const std::string& source) {
  return zib_deep_link_handler_handle_url(zib::URL::parse(url).value().native(), cText(source));
}

Json Module::createNotificationPayload(const zib::ValueMap& userInfo,
                                       const std::string& eventType) {
  return jsonTaken(zib_payload_builder_create_notification_payload(zib::objectFrom(userInfo).raw(),
                                                                   cText(eventType)));
}

Json Module::createEventPayload(const std::string& eventName,
                                const std::optional<zib::ValueMap>& properties) {
  const zib::Object given = properties ? zib::objectFrom(*properties) : zib::Object();
  return jsonTaken(zib_payload_builder_create_event_payload(cText(eventName), given.raw()));
}

void Module::setDelegateDiscovery(DelegateDiscovery discovery) {
  zib_messaging_set_delegate_discovery(discovery == DelegateDiscovery::continuous
                                           ? ZIB_DELEGATE_DISCOVERY_CONTINUOUS
                                           : ZIB_DELEGATE_DISCOVERY_ONCE_WITH_RETRY);
}

Json Module::report() {
  const std::unique_ptr<zib_integration_report, void (*)(zib_integration_report*)> report(
      zib_integration_report_create(), &zib_integration_report_free);
  Json rows = Json::array();
  const std::size_t count = zib_integration_report_row_count(report.get());
  for (std::size_t index = 0; index < count; ++index) rows.push_back(rowOf(report.get(), index));
  return {{"rows", rows}};
}

Json Module::state() {
  const auto fcmToken = taken(zib_messaging_copy_fcm_token());
  const auto apnsToken = zib::Object::adopted(zib_messaging_copy_apns_token());
  const auto plistPath = taken(zib_push_config_copy_saved_firebase_plist_path());
  return {{"isPushEnabled", zib_messaging_is_push_enabled()},
          {"fcmToken", fcmToken ? Json(*fcmToken) : Json()},
          {"apnsToken", apnsToken ? Json(hexFrom(zib::bytesOf(apnsToken.raw()))) : Json()},
          {"isSwizzlingEnabled", zib_testing_is_swizzling_enabled()},
          {"savedFirebasePlistPath", plistPath ? Json(*plistPath) : Json()}};
}

}  // namespace sim
