// What the host asks of the system itself, for as long as this lives: the timeline tells what the
// module asks.

#pragma once

namespace sim {

class HostsAct {
 public:
  HostsAct() { isRunning_ = true; }
  ~HostsAct() { isRunning_ = false; }
  HostsAct(const HostsAct&) = delete;
  HostsAct& operator=(const HostsAct&) = delete;

  // On this thread.
  static bool isRunning() noexcept { return isRunning_; }

 private:
  static inline thread_local bool isRunning_ = false;
};

}  // namespace sim
