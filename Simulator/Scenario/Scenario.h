// A scenario as it was read: what the device and the host are like, what happens, and what is
// expected of the timeline. Everything in it has been checked.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Simulator/Host/HostClasses.h"
#include "Simulator/Network/Sites.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibCoreBoundary/ZibConfig.h"

namespace sim {

enum class Documents { writable, readOnly, missing };

struct DeviceDescription {
  long osMajor = 17;
  long osMinor = 0;
  std::string bundlePath = "/Applications/HostApp.app";
  uikit::ApplicationPresence application = uikit::ApplicationPresence::present;
  usernotifications::Answer authorization;
  bool answersByItself = true;
  bool opensURLs = true;
  Documents documents = Documents::writable;
};

struct CoreDescription {
  std::optional<ZibConfig> config;
  std::optional<std::string> pushConfigEndpoint;
};

// A delegate object of the host. Which object it is matters for the notification delegate, which
// can be the same one as the application delegate.
struct DelegateDescription {
  enum class Kind { none, object, appDelegate };
  Kind kind = Kind::none;
  std::string className;
};

struct SceneDescription {
  bool hasWindow = true;
  DelegateDescription delegate;
};

struct FirebaseDescription {
  firebase::Pieces pieces;
  // None leaves the delegate as it is.
  std::optional<DelegateDescription> delegate;
};

struct HostDescription {
  enum class MessagingDelegate { kept, none, released };
  DelegateDescription appDelegate;
  DelegateDescription notificationDelegate;
  std::vector<SceneDescription> scenes;
  std::optional<FirebaseDescription> firebase;
  MessagingDelegate messagingDelegate = MessagingDelegate::kept;
  std::optional<bool> urlDelegate;
};

struct Step {
  std::string verb;
  std::string thread = "main";
  // The verb's fields as they stand in the scenario, checked.
  Json fields;
};

struct Scenario {
  std::string name;
  DeviceDescription device;
  CoreDescription core;
  HostDescription host;
  HostClassDescriptions hostClasses;
  Sites network;
  std::vector<Step> steps;
  Json expectations = Json::array();
};

}  // namespace sim
