// A scenario as it was read: what the device and the host are like, what happens, and what is
// expected of the timeline. Everything in it has been checked.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Simulator/Device/Device.h"
#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Simulator/Host/HostClasses.h"
#include "Simulator/Host/RecordingCore.h"
#include "Simulator/Json/Json.h"
#include "Simulator/Network/Sites.h"
#include "Simulator/Scenario/Steps.h"

namespace sim {

struct CoreDescription {
  std::optional<CoreConfig> config;
  std::optional<std::string> pushConfigEndpoint;
};

struct HostDescription {
  enum class MessagingDelegate { kept, none, released };
  DelegateDescription appDelegate{DelegateDescription::Kind::object, "HostAppDelegate"};
  DelegateDescription notificationDelegate;
  std::vector<SceneDescription> scenes;
  std::optional<FirebaseDescription> firebase;
  MessagingDelegate messagingDelegate = MessagingDelegate::kept;
  std::optional<bool> urlDelegate;
};

struct Verb;

struct Step {
  const Verb* verb = nullptr;
  std::string thread = "main";
  Action action;
  // As it stands in the scenario, for people.
  Json written;
};

// Where what the module is called with is recorded as a scenario.
struct RecordingFile {
  std::string path;
  bool hasTexts = false;
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
  // Not of the scenario's own, but of whoever has it played.
  std::optional<RecordingFile> recording;
};

}  // namespace sim
