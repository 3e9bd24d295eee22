// The servers of a scenario as one HTTP server on loopback, which tells them apart by the Host that
// a request names. It knows no faults; see FaultServer.h.

#pragma once

#include <memory>
#include <thread>

#include "Simulator/HTTP/Server.h"
#include "Simulator/Network/Sites.h"

namespace sim {

class LoopbackServer {
 public:
  // `sites` outlives the server. Listens when this returns.
  explicit LoopbackServer(const Sites& sites);
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;
  ~LoopbackServer();

  [[nodiscard]] int port() const noexcept;

 private:
  std::unique_ptr<HTTPServer> server_;
  std::thread thread_;
};

}  // namespace sim
