// What steps act on: the device, the host app with its delegates, and the completions that the
// system has handed out.

#pragma once

#include <filesystem>

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

  static zib::Object makeDelegate(const DelegateDescription& description);
  static void connectScene(const SceneDescription& scene);
  static void applyFirebase(const FirebaseDescription& firebase);

  // Time passes when the step that is played is done with the thread that it runs on.
  void passTimeAfterStep(double seconds) { secondsAfterStep_ += seconds; }
  // Runs and waits for what follows from the step.
  void endStep();

 private:
  void setUpHost(const HostDescription& host);

  Device device_;
  Module module_;
  CompletionWatch completions_;
  double secondsAfterStep_ = 0;
};

}  // namespace sim
