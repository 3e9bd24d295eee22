#include "Simulator/Scenario/Interruption.h"

#include <atomic>
#include <csignal>

namespace sim {
namespace {

std::atomic<int> received{0};
std::atomic<pid_t> target{0};
static_assert(std::atomic<pid_t>::is_always_lock_free, "a signal handler must not wait for a lock");

void handle(int signal) {
  received = signal;
  if (const pid_t process = target; process != 0) ::kill(process, SIGKILL);
}

}  // namespace

Interruption::Interruption() {
  received = 0;
  target = 0;
  struct sigaction action {};
  action.sa_handler = &handle;
  for (std::size_t index = 0; index < signals.size(); ++index) {
    ::sigaction(signals[index], nullptr, &before_[index]);
    // Whoever started the run may have told it to ignore the signal, as nohup does.
    if (before_[index].sa_handler != SIG_IGN) ::sigaction(signals[index], &action, nullptr);
  }
}

Interruption::~Interruption() {
  stop();
  if (received != 0) std::raise(received);
}

void Interruption::endInstead(pid_t process) {
  target = process;
  if (received != 0) ::kill(process, SIGKILL);
}

void Interruption::stop() const {
  for (std::size_t index = 0; index < signals.size(); ++index) {
    ::sigaction(signals[index], &before_[index], nullptr);
  }
}

}  // namespace sim
