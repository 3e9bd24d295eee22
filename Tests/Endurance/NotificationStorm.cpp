// So many notifications, shown and tapped in turn, in one process: each counts once, and memory
// stays flat.
//   notification-storm [COUNT]    20000 unless given

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "Simulator/Dispatch/Scheduler.h"
#include "Tests/Endurance/Host.h"

namespace {

using endurance::Host;

long residentKilobytes() {
  std::ifstream status("/proc/self/statm");
  long total = 0;
  long resident = 0;
  status >> total >> resident;
  return resident * ::sysconf(_SC_PAGESIZE) / 1024;
}

// What the allocator may keep from one moment to another. A byte for each notification of two
// million would be twice that.
constexpr long allowedKilobytes = 1024;

}  // namespace

int main(int argc, char** argv) {
  const long count = argc > 1 ? std::atol(argv[1]) : 20'000;
  if (count < 1'000 || argc > 2) {
    std::cerr << "notification-storm: allowed: one number of at least 1000\n";
    return 2;
  }
  Host host;
  host.configure();
  const long warmUp = count / 10;
  long before = 0;
  for (long index = 0; index < count; ++index) {
    if (index == warmUp) before = residentKilobytes();
    host.present();
    host.respond();
    // The link is opened.
    sim::Scheduler::shared().drain();
  }
  const long grown = residentKilobytes() - before;
  std::cout << 2 * count << " notifications, " << host.events() << " events, " << host.callbacks()
            << " of the host's callbacks, " << host.completions() << " completions, memory grew by "
            << grown << " KB\n";
  const long expected = 2 * count;
  const bool isCounted =
      host.events() == expected && host.callbacks() == expected && host.completions() == expected;
  return isCounted && grown <= allowedKilobytes ? 0 : 1;
}
