// What a step does, as a value: one type for each verb of a scenario, with the verb's fields. How
// each is read and played stands in Verbs.cpp.

#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Simulator/Host/HostClasses.h"
#include "Simulator/Host/RecordingCore.h"
#include "Simulator/Scenario/Operations.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Value.h"

namespace sim {

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

namespace steps {

struct Configure {};
struct RegisterForPush {};
struct RegisterForPushSimple {};
struct ConfigurePush {
  std::optional<std::string> endpoint;
  bool hasCompletion = true;
  // How the host's handler starts Firebase.
  std::optional<FirebaseDescription> firebase;
};
struct AnswerAuthorization : usernotifications::Answer {};
struct DeviceToken {
  zib::Bytes token;
};
struct RegistrationFailure {
  std::optional<zib::Error> error;
};
struct FCMToken {
  std::optional<std::string> token;
};
struct Present {
  zib::ValueMap userInfo;
};
struct Respond {
  zib::ValueMap userInfo;
  std::string action = usernotifications::defaultAction;
};
struct OpenURL {
  std::string url;
  zib::ValueMap options;
};
struct SceneOpenURLs {
  std::size_t scene = 0;
  std::vector<std::string> urls;
};
struct SetNotificationDelegate {
  DelegateDescription delegate;
};
struct ConnectScene : SceneDescription {};
struct SetFirebase : FirebaseDescription {};
struct ReleaseMessagingDelegate {};
struct SetURLDelegate {
  std::optional<bool> answer;
};
struct SetConfig {
  std::optional<CoreConfig> config;
};
struct SetSwizzlingEnabled {
  bool isEnabled = true;
};
struct Call {
  const OperationRow* operation = nullptr;
  Operation arguments;
};
struct ReplaceMethod {
  std::string className;
  HostMethod method = HostMethod::didRegister;
};
struct FinishLaunching {};
struct Busy {
  double seconds = 0;
};
struct Advance {
  double seconds = 0;
};
struct State {};
struct Report {};

}  // namespace steps

using Action =
    std::variant<steps::Configure, steps::RegisterForPush, steps::RegisterForPushSimple,
                 steps::ConfigurePush, steps::AnswerAuthorization, steps::DeviceToken,
                 steps::RegistrationFailure, steps::FCMToken, steps::Present, steps::Respond,
                 steps::OpenURL, steps::SceneOpenURLs, steps::SetNotificationDelegate,
                 steps::ConnectScene, steps::SetFirebase, steps::ReleaseMessagingDelegate,
                 steps::SetURLDelegate, steps::SetConfig, steps::SetSwizzlingEnabled, steps::Call,
                 steps::ReplaceMethod, steps::FinishLaunching, steps::Busy, steps::Advance,
                 steps::State, steps::Report>;

}  // namespace sim
