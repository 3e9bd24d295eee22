// The core library's entry object, as far as the messaging module needs it.

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ZibCoreBoundary/ZibConfig.h"
#include "ZibPlatform/Foundation/Value.h"

// Implemented by the core library. The module calls from any thread; implementations must allow
// that and must not throw.
class Zib {
 public:
  Zib() = default;
  Zib(const Zib&) = delete;
  Zib& operator=(const Zib&) = delete;
  virtual ~Zib() = default;

  // None while the core has no configuration.
  [[nodiscard]] virtual std::optional<ZibConfig> config() const = 0;
  // Records one analytics event under a schema URI. Called once for each event, never again for the
  // same one.
  virtual void trackSelfDescribingEvent(std::string_view schema, const zib::ValueMap& data) = 0;
  // The URL of the remote push configuration; none while the core is not initialised.
  [[nodiscard]] virtual std::optional<std::string> pushConfigEndpoint() const = 0;
  // The FCM registration token, whole.
  virtual void registerPushToken(std::string_view token) = 0;

  // The installed core; until then one without configuration or endpoint that drops events.
  static Zib& shared() noexcept;
  // Whether one is installed.
  static bool isInstalled() noexcept;
  // For the core library, once, when it starts. False when a core is installed already.
  static bool install(std::unique_ptr<Zib> core) noexcept;
};
