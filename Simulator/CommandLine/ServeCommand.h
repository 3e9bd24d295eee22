// zibsim serve: the page on loopback.

#pragma once

namespace sim {

struct ServeOptions {
  int port = 8420;
};

// Until the process is ended. Throws UsageError where the port cannot be had.
int servePage(const ServeOptions& options);

}  // namespace sim
