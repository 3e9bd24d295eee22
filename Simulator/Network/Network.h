// What lies behind a device's antenna: the servers of a scenario, and nothing else. Every other
// host is as far away as if the device were offline.

#pragma once

#include <mutex>
#include <optional>

#include "Simulator/HTTP/Transfer.h"
#include "Simulator/Network/LoopbackServer.h"
#include "Simulator/Network/Sites.h"

namespace sim {

class Network {
 public:
  explicit Network(Sites sites) : sites_(std::move(sites)) {}

  // The exchange with all its redirects, waited for in real time. Any thread.
  HTTPOutcome exchange(HTTPRequest request);

 private:
  HTTPOutcome exchangeOnce(const HTTPRequest& request);
  int serverPort();

  const Sites sites_;
  std::mutex mutex_;
  std::optional<LoopbackServer> server_;
};

}  // namespace sim
