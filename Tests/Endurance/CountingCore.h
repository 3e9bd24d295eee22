// A core library that counts events and is silent otherwise.

#pragma once

#include <atomic>
#include <memory>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"

namespace endurance {

class CountingCore : public Zib {
 public:
  // Once in a process. `events` stays as long as it.
  static void install(std::atomic<long>& events) {
    Zib::install(std::make_unique<CountingCore>(events));
    ZibLogger::install(std::make_unique<SilentLogger>());
  }

  explicit CountingCore(std::atomic<long>& events) : events_(events) {}
  [[nodiscard]] std::optional<ZibConfig> config() const override { return std::nullopt; }
  void trackSelfDescribingEvent(std::string_view /*schema*/,
                                const zib::ValueMap& /*data*/) override {
    ++events_;
  }
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override {
    return std::nullopt;
  }
  void registerPushToken(std::string_view /*token*/) override {}

 private:
  class SilentLogger : public ZibLogger {
    void log(std::string_view /*message*/) override {}
    void error(std::string_view /*message*/, const std::optional<zib::Error>& /*error*/) override {}
  };

  std::atomic<long>& events_;
};

}  // namespace endurance
