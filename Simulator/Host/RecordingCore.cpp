#include "Simulator/Host/RecordingCore.h"

#include "Simulator/Foundation/Setting.h"
#include "Simulator/Host/CText.h"
#include "Simulator/Json/Values.h"
#include "Simulator/Timeline/Timeline.h"

namespace sim {
namespace {

Setting<std::optional<CoreConfig>>& configSetting() {
  static Setting<std::optional<CoreConfig>> setting(std::nullopt);
  return setting;
}

Setting<std::optional<std::string>>& endpointSetting() {
  static Setting<std::optional<std::string>> setting(std::nullopt);
  return setting;
}

bool config(void* /*context*/, zib_config* config) {
  const auto known = configSetting().get();
  if (known) config->auto_swizzling_enabled = known->autoSwizzlingEnabled;
  return known.has_value();
}

zib_text copyPushConfigEndpoint(void* /*context*/) {
  const auto endpoint = endpointSetting().get();
  return endpoint ? zib_text_copy(cText(*endpoint)) : zib_text{};
}

void log(void* /*context*/, zib_text line) {
  Timeline::shared().add("log", {{"level", "info"}, {"message", textOf(line)}});
}

void logError(void* /*context*/, zib_text line, const zib_error* error) {
  Json fields = {{"level", "error"}, {"message", textOf(line)}};
  if (error != nullptr) fields["error"] = jsonFrom(*error);
  Timeline::shared().add("log", fields);
}

void track(void* /*context*/, zib_text schema, zib_object data) {
  Timeline::shared().add("event", {{"schema", textOf(schema)}, {"data", jsonFromObject(data)}});
}

void registerPushToken(void* /*context*/, zib_text token) {
  Timeline::shared().add("core", {{"operation", "registerPushToken"}, {"token", textOf(token)}});
}

void recordStorage(const char* operation, const Json& value) {
  Timeline::shared().add("storage", {{"operation", operation}, {"value", value}});
}

void savePushPermission(void* /*context*/, bool granted) {
  recordStorage("savePushPermission", granted);
}

void saveFCMToken(void* /*context*/, zib_text token) {
  recordStorage("saveFCMToken", textOf(token));
}

}  // namespace

void installRecordingCore() {
  zib_core core{};
  core.size = sizeof(core);
  core.config = &config;
  core.copy_push_config_endpoint = &copyPushConfigEndpoint;
  core.log = &log;
  core.error = &logError;
  core.track_self_describing_event = &track;
  core.register_push_token = &registerPushToken;
  core.save_push_permission = &savePushPermission;
  core.save_fcm_token = &saveFCMToken;
  zib_core_install(&core);
}

void setCoreConfig(std::optional<CoreConfig> config) { configSetting().set(config); }
void setPushConfigEndpoint(std::optional<std::string> endpoint) {
  endpointSetting().set(std::move(endpoint));
}

Json jsonFrom(const zib_error& error) {
  return {{"domain", textOf(error.domain)},
          {"code", error.code},
          {"description", textOf(error.description)}};
}

}  // namespace sim
