// What the terminal or the system does to a run from outside: SIGINT, SIGTERM, SIGHUP.

#pragma once

#include <sys/types.h>

#include <array>
#include <csignal>

namespace sim {

// While it lives, such a signal ends the scenario's process instead of this one, so that what the
// scenario leaves behind is cleared away as at any end. The destructor then lets the signal have
// its usual effect. One at a time, on the main thread.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  // Names the process to end; a signal that came before ends it at once.
  static void endInstead(pid_t process);
  // Gives the signals their usual effect again: for the scenario's process itself.
  void stop() const;

 private:
  static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP};

  std::array<struct sigaction, signals.size()> before_{};
};

}  // namespace sim
