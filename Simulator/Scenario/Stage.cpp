#include "Simulator/Scenario/Stage.h"

#include <utility>

#include "Simulator/Host/RecordingCore.h"

namespace sim {

Stage::Stage(const Scenario& scenario, const std::filesystem::path& documents)
    : device_(scenario.device, documents) {
  device_.connectTo(scenario.network);
  registerHostClasses(scenario.hostClasses);
  installRecordingCore();
  setCoreConfig(scenario.core.config);
  setPushConfigEndpoint(scenario.core.pushConfigEndpoint);
  setUpHost(scenario.host);
}

void Stage::setUpHost(const HostDescription& host) {
  uikit::setAppDelegate(makeDelegate(host.appDelegate));
  usernotifications::setDelegate(makeDelegate(host.notificationDelegate));
  for (const SceneDescription& scene : host.scenes) connectScene(scene);
  if (host.firebase) applyFirebase(*host.firebase);
  Module::setURLDelegate(host.urlDelegate);
  using MessagingDelegate = HostDescription::MessagingDelegate;
  if (host.messagingDelegate != MessagingDelegate::none) module_.setDelegate();
  if (host.messagingDelegate == MessagingDelegate::released) module_.letDelegateGo();
}

zib::Object Stage::makeDelegate(const DelegateDescription& description) {
  switch (description.kind) {
    case DelegateDescription::Kind::none:
      return {};
    case DelegateDescription::Kind::appDelegate:
      return zib::Object::retained(uikit::appDelegate());
    case DelegateDescription::Kind::object:
      return makeHostObject(description.className);
  }
  return {};
}

void Stage::connectScene(const SceneDescription& scene) {
  uikit::connectScene(scene.hasWindow, makeDelegate(scene.delegate));
}

void Stage::applyFirebase(const FirebaseDescription& firebase) {
  firebase::set(firebase.pieces);
  if (firebase.delegate) firebase::setDelegate(makeDelegate(*firebase.delegate));
}

void Stage::endStep() {
  if (const double seconds = std::exchange(secondsAfterStep_, 0); seconds > 0) {
    device_.advance(seconds);
  }
  device_.settle();
}

}  // namespace sim
