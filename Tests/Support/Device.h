// The simulated device that a test runs on, with a core that records, and a view of what happened.
//
// Not for tests of a platform service alone: those need foundation::install() at most.

#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Device/Device.h"
#include "Simulator/Json/Values.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/UIKit/Application.h"

namespace test {

// One in a process. A service of the core that the test has installed before stays.
class Device {
 public:
  // The user answers no request.
  explicit Device(
      sim::uikit::ApplicationPresence presence = sim::uikit::ApplicationPresence::present,
      const std::filesystem::path& documents = {});
  ~Device();
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  static zib::Application application();
  // Runs what the main queue holds, and lets time pass.
  static void drain() { sim::Device::settle(); }
  static void advance(double seconds) { sim::Device::advance(seconds); }
  // The servers that can be reached from now on.
  void connectTo(sim::Sites sites) { device_.connectTo(std::move(sites)); }

  // What was recorded since the start, or since forget(), in order. Any thread.
  [[nodiscard]] std::vector<sim::Json> entries() const;
  [[nodiscard]] std::vector<sim::Json> entries(std::string_view kind) const;
  [[nodiscard]] std::vector<std::string> infoLines() const { return lines("info"); }
  [[nodiscard]] std::vector<std::string> errorLines() const { return lines("error"); }
  [[nodiscard]] std::size_t countOfLine(std::string_view line) const;
  // The values of one field of the entries of that kind.
  [[nodiscard]] std::vector<sim::Json> fields(std::string_view kind, const char* name) const;
  void forget();

 private:
  [[nodiscard]] std::vector<std::string> lines(std::string_view level) const;

  zib::AutoreleasePool pool_;
  sim::Device device_;
  mutable std::mutex mutex_;
  std::vector<sim::Json> entries_;
};

}  // namespace test
