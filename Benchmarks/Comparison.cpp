#include "Benchmarks/Comparison.h"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "Benchmarks/Device.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace bench {

Sample measure(const std::function<void()>& call, int calls) {
  using Clock = std::chrono::steady_clock;
  const Allocations before = allocationsSoFar();
  const auto start = Clock::now();
  {
    const zib::AutoreleasePool pool;
    for (int index = 0; index < calls; ++index) call();
  }
  const std::chrono::duration<double, std::nano> time = Clock::now() - start;
  const Allocations used = allocationsSoFar() - before;
  return {time.count() / calls, static_cast<double>(used.count) / calls,
          static_cast<double>(used.bytes) / calls};
}

Sample measureConfigure(const zib::Object& host, void (*configure)()) {
  std::array<int, 2> pipe{};
  if (::pipe(pipe.data()) != 0) std::abort();
  const pid_t child = fork();
  if (child == 0) {
    setDelegate(host);
    const Sample sample = measure(configure, 1);
    _exit(write(pipe[1], &sample, sizeof sample) == sizeof sample ? 0 : 1);
  }
  Sample sample;
  const bool isRead = read(pipe[0], &sample, sizeof sample) == sizeof sample;
  close(pipe[0]);
  close(pipe[1]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!isRead || status != 0) {
    std::fputs("bench: the process that configures failed\n", stderr);
    std::abort();
  }
  return sample;
}

}  // namespace bench
