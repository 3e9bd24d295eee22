// What steps act on: the device, the host app with its delegates, and the completions that the
// system has handed out.

#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "Simulator/Device/Device.h"
#include "Simulator/Host/Module.h"
#include "Simulator/Scenario/CompletionWatch.h"
#include "Simulator/Scenario/Scenario.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace sim {

// One in a process: the module's state, like the classes of the runtime, is the process's.
class Stage {
 public:
  // `documents` stands for the Documents directory; empty where there is none.
  Stage(const Scenario& scenario, const std::filesystem::path& documents);

  [[nodiscard]] Device& device() noexcept { return device_; }
  [[nodiscard]] Module& module() noexcept { return module_; }
  [[nodiscard]] CompletionWatch& completions() noexcept { return completions_; }

  // The application appears or has launched, and its scenes connect.
  void finishLaunching();
  // The system calls back: on the main thread in a turn of its own, on another one at once. An
  // exception that comes back ends the process, as it would an app.
  static void callBack(const char* of, std::function<void()> callback);

  [[nodiscard]] zib::Object makeDelegate(const DelegateDescription& description) const;
  void connectScene(const SceneDescription& scene) const;
  void applyFirebase(const FirebaseDescription& firebase) const;

  // Time passes when the step that is played is done with the thread that it runs on.
  void passTimeAfterStep(double seconds) { secondsAfterStep_ += seconds; }
  // Runs and waits for what follows from the step.
  void endStep();

 private:
  void setUpHost(const HostDescription& host, bool isLate);

  Device device_;
  Module module_;
  CompletionWatch completions_;
  zib::Object appDelegate_;
  // Those that connect once an application that is late has launched.
  std::vector<SceneDescription> lateScenes_;
  double secondsAfterStep_ = 0;
};

}  // namespace sim
