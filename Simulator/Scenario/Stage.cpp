#include "Simulator/Scenario/Stage.h"

#include <cstdlib>
#include <utility>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Host/RecordingCore.h"
#include "Simulator/Timeline/Timeline.h"

namespace sim {

Stage::Stage(const Scenario& scenario, const std::filesystem::path& documents)
    : device_(scenario.device, documents) {
  device_.connectTo(scenario.network);
  registerHostClasses(scenario.hostClasses);
  installRecordingCore();
  setCoreConfig(scenario.core.config);
  setPushConfigEndpoint(scenario.core.pushConfigEndpoint);
  setUpHost(scenario.host, scenario.device.application == uikit::ApplicationPresence::late);
}

void Stage::setUpHost(const HostDescription& host, bool isLate) {
  appDelegate_ = makeDelegate(host.appDelegate);
  uikit::setAppDelegate(appDelegate_);
  usernotifications::setDelegate(makeDelegate(host.notificationDelegate));
  if (isLate) {
    lateScenes_ = host.scenes;
  } else {
    for (const SceneDescription& scene : host.scenes) connectScene(scene);
  }
  if (host.firebase) applyFirebase(*host.firebase);
  Module::setURLDelegate(host.urlDelegate);
  using MessagingDelegate = HostDescription::MessagingDelegate;
  if (host.messagingDelegate != MessagingDelegate::none) module_.setDelegate();
  if (host.messagingDelegate == MessagingDelegate::released) module_.letDelegateGo();
}

void Stage::finishLaunching() {
  uikit::finishLaunching();
  for (const SceneDescription& scene : std::exchange(lateScenes_, {})) connectScene(scene);
}

void Stage::callBack(const char* of, std::function<void()> callback) {
  const auto guarded = [of, call = std::move(callback)] {
    try {
      call();
    } catch (...) {
      Timeline::shared().add("problem",
                             {{"code", "uncaughtException"},
                              {"of", of},
                              {"message", std::string("an exception came back from ") + of}});
      std::abort();
    }
  };
  if (currentThreadName() == mainThreadName) {
    Scheduler::shared().submitNow(guarded);
  } else {
    guarded();
  }
}

zib::Object Stage::makeDelegate(const DelegateDescription& description) const {
  switch (description.kind) {
    case DelegateDescription::Kind::none:
      return {};
    case DelegateDescription::Kind::appDelegate:
      return appDelegate_;
    case DelegateDescription::Kind::object:
      return makeHostObject(description.className);
  }
  return {};
}

void Stage::connectScene(const SceneDescription& scene) const {
  uikit::connectScene(scene.hasWindow, makeDelegate(scene.delegate));
}

void Stage::applyFirebase(const FirebaseDescription& firebase) const {
  firebase::set(firebase.pieces);
  if (firebase.delegate) firebase::setDelegate(makeDelegate(*firebase.delegate));
}

void Stage::endStep() {
  if (const double seconds = std::exchange(secondsAfterStep_, 0); seconds > 0) {
    Device::advance(seconds);
  }
  Device::settle();
}

}  // namespace sim
