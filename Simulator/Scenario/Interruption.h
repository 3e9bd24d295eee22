// What the terminal or the system does to a run from outside: SIGINT, SIGTERM, SIGHUP.

#pragma once

#include <array>
#include <csignal>

namespace sim {

// While it lives, such a signal is only noted, so that the processes of the scenarios are ended and
// what they leave behind is cleared away as at any end. The destructor then lets the signal have
// its usual effect. One at a time, on the main thread.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  [[nodiscard]] static bool hasCome();
  // Readable from when a signal has come.
  [[nodiscard]] int descriptor() const { return ends_[0]; }
  // Gives the signals their usual effect again: for the scenario's process itself.
  void stop() const;

 private:
  static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP};

  std::array<struct sigaction, signals.size()> before_{};
  std::array<int, 2> ends_{};
};

}  // namespace sim
