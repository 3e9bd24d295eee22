// The core library's logger, as far as the messaging module needs it.

#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "ZibPlatform/Foundation/Error.h"

// Implemented by the core library, whose logger adds level, time stamp and destination. The module
// calls from any thread; implementations must allow that and must not throw.
class ZibLogger {
 public:
  ZibLogger() = default;
  ZibLogger(const ZibLogger&) = delete;
  ZibLogger& operator=(const ZibLogger&) = delete;
  virtual ~ZibLogger() = default;

  // Information and warnings: one complete line, valid during the call.
  virtual void log(std::string_view message) = 0;
  // Failures, with the error where there is one.
  virtual void error(std::string_view message, const std::optional<zib::Error>& error) = 0;

  // The installed logger; one that drops everything until then.
  static ZibLogger& shared() noexcept;
  // Whether one is installed.
  static bool isInstalled() noexcept;
  // For the core library, once, when it starts. False when a logger is installed already.
  static bool install(std::unique_ptr<ZibLogger> logger) noexcept;
};
