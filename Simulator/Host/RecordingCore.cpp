#include "Simulator/Host/RecordingCore.h"

#include <memory>

#include "Simulator/Foundation/Setting.h"
#include "Simulator/Json/Values.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"

namespace sim {
namespace {

Setting<std::optional<ZibConfig>>& configSetting() {
  static Setting<std::optional<ZibConfig>> setting(std::nullopt);
  return setting;
}

Setting<std::optional<std::string>>& endpointSetting() {
  static Setting<std::optional<std::string>> setting(std::nullopt);
  return setting;
}

class RecordingLogger final : public ZibLogger {
 public:
  void log(std::string_view message) override {
    Timeline::shared().add("log", {{"level", "info"}, {"message", message}});
  }
  void error(std::string_view message, const std::optional<zib::Error>& error) override {
    Json fields = {{"level", "error"}, {"message", message}};
    if (error) fields["error"] = jsonFrom(*error);
    Timeline::shared().add("log", fields);
  }
};

class RecordingZib final : public Zib {
 public:
  [[nodiscard]] std::optional<ZibConfig> config() const override { return configSetting().get(); }
  void trackSelfDescribingEvent(std::string_view schema, const zib::ValueMap& data) override {
    Timeline::shared().add("event", {{"schema", schema}, {"data", jsonFrom(data)}});
  }
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override {
    return endpointSetting().get();
  }
  void registerPushToken(std::string_view token) override {
    Timeline::shared().add("core", {{"operation", "registerPushToken"}, {"token", token}});
  }
};

class RecordingStorage final : public ZibStorage {
 public:
  void savePushPermission(bool granted) override { record("savePushPermission", granted); }
  void saveFCMToken(std::string_view token) override { record("saveFCMToken", token); }

 private:
  static void record(const char* operation, const Json& value) {
    Timeline::shared().add("storage", {{"operation", operation}, {"value", value}});
  }
};

}  // namespace

void installRecordingCore() {
  ZibLogger::install(std::make_unique<RecordingLogger>());
  Zib::install(std::make_unique<RecordingZib>());
  ZibStorage::install(std::make_unique<RecordingStorage>());
}

void setCoreConfig(std::optional<ZibConfig> config) { configSetting().set(config); }
void setPushConfigEndpoint(std::optional<std::string> endpoint) {
  endpointSetting().set(std::move(endpoint));
}

}  // namespace sim
