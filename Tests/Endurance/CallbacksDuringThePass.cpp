// Eight threads of the system's callbacks while the module puts itself before the host's methods:
// each callback reaches the host and is completed once, and is counted at most once. For the thread
// sanitizer.
//   callbacks-during-the-pass [ROUNDS]    20 unless given, each in a process of its own

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <thread>
#include <vector>

#include "Tests/Endurance/Host.h"

namespace {

constexpr int threadCount = 8;
constexpr int callbacksBefore = 200;
constexpr int callbacksAfter = 200;

int round() {
  endurance::Host host;
  std::atomic<bool> isConfigured = false;
  std::atomic<int> started = 0;
  std::vector<std::thread> threads;
  threads.reserve(threadCount);
  for (int index = 0; index < threadCount; ++index) {
    threads.emplace_back([&, index] {
      ++started;
      int rest = callbacksAfter;
      for (int done = 0; rest > 0; ++done) {
        const bool isAfter = isConfigured;
        if (isAfter && done >= callbacksBefore) --rest;
        if (index % 2 == 0) {
          host.present();
        } else if (isAfter) {
          host.respond();
        } else {
          host.respondWithoutLink();
        }
      }
    });
  }
  while (started < threadCount) std::this_thread::yield();
  host.configure();
  isConfigured = true;
  for (std::thread& thread : threads) thread.join();
  const bool isComplete = host.completions() == host.sent() && host.callbacks() == host.sent();
  const bool isCounted =
      host.events() <= host.sent() && host.events() >= long{threadCount} * callbacksAfter;
  if (!isComplete || !isCounted) {
    std::cerr << host.sent() << " sent, " << host.callbacks() << " reached the host, "
              << host.completions() << " completed, " << host.events() << " counted\n";
  }
  return isComplete && isCounted ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 20;
  if (rounds < 1 || argc > 2) {
    std::cerr << "callbacks-during-the-pass: allowed: one number of rounds\n";
    return 2;
  }
  for (int index = 0; index < rounds; ++index) {
    const pid_t child = ::fork();
    if (child == 0) std::exit(round());  // NOLINT(concurrency-mt-unsafe): the threads have ended
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != EXIT_SUCCESS) {
      std::cerr << "round " << index + 1 << " ended with the wait status " << status << '\n';
      return 1;
    }
  }
  std::cout << rounds << " rounds, all callbacks complete\n";
  return 0;
}
