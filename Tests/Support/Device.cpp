#include "Tests/Support/Device.h"

#include <algorithm>
#include <iterator>

#include "Simulator/Host/RecordingCore.h"

namespace test {

namespace {

sim::DeviceDescription description(sim::uikit::ApplicationPresence presence) {
  sim::DeviceDescription result;
  result.application = presence;
  result.answersByItself = false;
  return result;
}

}  // namespace

Device::Device(sim::uikit::ApplicationPresence presence, const std::filesystem::path& documents)
    : device_(description(presence), documents) {
  sim::installRecordingCore();
  sim::Timeline::shared().setSink([this](const sim::Json& entry) {
    const std::lock_guard lock(mutex_);
    entries_.push_back(entry);
  });
}

Device::~Device() { sim::Timeline::shared().setSink({}); }

zib::Application Device::application() {
  return zib::Application::retained(sim::uikit::application());
}

std::vector<sim::Json> Device::entries() const {
  const std::lock_guard lock(mutex_);
  return entries_;
}

std::vector<sim::Json> Device::entries(std::string_view kind) const {
  const std::lock_guard lock(mutex_);
  std::vector<sim::Json> result;
  std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(result),
               [&](const sim::Json& entry) { return entry.at("kind") == kind; });
  return result;
}

std::vector<std::string> Device::lines(std::string_view level) const {
  std::vector<std::string> result;
  for (const sim::Json& entry : entries("log")) {
    if (entry.at("level") == level) result.push_back(entry.at("message"));
  }
  return result;
}

std::size_t Device::countOfLine(std::string_view line) const {
  const auto all = infoLines();
  return static_cast<std::size_t>(std::count(all.begin(), all.end(), line));
}

std::vector<sim::Json> Device::fields(std::string_view kind, const char* name) const {
  std::vector<sim::Json> result;
  for (const sim::Json& entry : entries(kind)) result.push_back(entry.value(name, sim::Json()));
  return result;
}

void Device::forget() {
  const std::lock_guard lock(mutex_);
  entries_.clear();
}

}  // namespace test
