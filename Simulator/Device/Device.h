// The simulated device: Foundation with its clock, its disk and its network, UIKit, and
// UserNotifications, set up as one describes it.
//
// Firebase is no part of it: the app brings it.

#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "Simulator/Device/Documents.h"
#include "Simulator/Network/Sites.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"

namespace sim {

class Network;

struct SystemVersion {
  long major = 17;
  long minor = 0;
  friend bool operator==(const SystemVersion&, const SystemVersion&) = default;
};

struct DeviceDescription {
  SystemVersion osVersion;
  std::string bundlePath = "/Applications/HostApp.app";
  // None is a test process without a host.
  std::optional<std::string> bundleIdentifier = "com.example.HostApp";
  uikit::ApplicationPresence application = uikit::ApplicationPresence::present;
  uikit::AsksDelegate asksDelegate = uikit::AsksDelegate::whenSet;
  // How the user answers, and whether without being told to.
  usernotifications::Answer authorization;
  bool answersByItself = true;
  bool opensURLs = true;
  Documents documents = Documents::writable;
};

// One in a process, since the runtime's classes are the process's; they stay when it goes.
class Device {
 public:
  // `documents` stands for the Documents directory; it is not looked at where there is none.
  explicit Device(const DeviceDescription& description = {},
                  const std::filesystem::path& documents = {});
  ~Device();
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  // The servers that can be reached from now on; before the first call the device is offline.
  void connectTo(Sites sites);

  // Runs what the main queue holds, and waits for what is under way.
  static void settle();
  // Lets time pass.
  static void advance(double seconds);

 private:
  std::shared_ptr<Network> network_;
};

}  // namespace sim
