#include "Simulator/Scenario/Interruption.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <stdexcept>

namespace sim {
namespace {

std::atomic<int> received{0};
std::atomic<int> wakeUp{-1};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler must not wait for a lock");

void handle(int signal) {
  const int before = errno;
  received = signal;
  // A full pipe is as readable as one with this byte.
  static_cast<void>(!::write(wakeUp, "", 1));
  errno = before;
}

}  // namespace

Interruption::Interruption() {
  if (::pipe2(ends_.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    throw std::runtime_error("no pipe to be woken through");
  }
  received = 0;
  wakeUp = ends_[1];
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
  for (const int end : ends_) ::close(end);
  if (received != 0) std::raise(received);
}

bool Interruption::hasCome() { return received != 0; }

void Interruption::stop() const {
  for (std::size_t index = 0; index < signals.size(); ++index) {
    ::sigaction(signals[index], &before_[index], nullptr);
  }
}

}  // namespace sim
