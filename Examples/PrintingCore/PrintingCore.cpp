#include "PrintingCore/PrintingCore.h"

#include <cstdio>
#include <memory>
#include <string>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"

namespace {

// The module calls from any thread: one call of the C library for a whole line keeps it whole.
void print(const char* who, std::string line) {
  line.insert(0, " | ").insert(0, who).push_back('\n');
  std::fputs(line.c_str(), stdout);
}

class PrintingLogger final : public ZibLogger {
 public:
  void log(std::string_view message) override { print("zib   ", std::string(message)); }
  void error(std::string_view message, const std::optional<zib::Error>& error) override {
    std::string line(message);
    if (error) line += " (" + error->domain + " " + std::to_string(error->code) + ")";
    print("zib   ", line);
  }
};

class PrintingZib final : public Zib {
 public:
  explicit PrintingZib(ZibConfig config) : config_(config) {}

  [[nodiscard]] std::optional<ZibConfig> config() const override { return config_; }

  // Values of any kind can come; this app is content with the texts.
  void trackSelfDescribingEvent(std::string_view schema, const zib::ValueMap& data) override {
    std::string line = "event " + std::string(schema);
    for (const auto& [key, value] : data) {
      if (const auto* text = value.get<std::string>()) line += "\n         " + key + ": " + *text;
    }
    print("core  ", line);
  }

  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override {
    return std::nullopt;
  }

  void registerPushToken(std::string_view token) override {
    print("core  ", "registers the token " + std::string(token));
  }

 private:
  ZibConfig config_;
};

class PrintingStorage final : public ZibStorage {
 public:
  void savePushPermission(bool granted) override {
    print("core  ", granted ? "stores: push is allowed" : "stores: push is not allowed");
  }
  void saveFCMToken(std::string_view token) override {
    print("core  ", "stores the token " + std::string(token));
  }
};

}  // namespace

void installPrintingCore(ZibConfig config) {
  ZibLogger::install(std::make_unique<PrintingLogger>());
  Zib::install(std::make_unique<PrintingZib>(config));
  ZibStorage::install(std::make_unique<PrintingStorage>());
}
