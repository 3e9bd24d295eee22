// A server that takes one connection and lets it go wrong, with real sockets.

#pragma once

#include <functional>
#include <thread>

#include "Simulator/Network/Sites.h"
#include "Simulator/Network/Socket.h"

namespace sim {

class FaultServer {
 public:
  // For any fault that has a server, which `none` and `unknownHost` do not. `reply` outlives the
  // server. Calls `onHang`, on a thread of its own, when it is about to answer no more.
  FaultServer(const Reply& reply, std::function<void()> onHang);
  FaultServer(const FaultServer&) = delete;
  FaultServer& operator=(const FaultServer&) = delete;
  // The client has closed its connection by then.
  ~FaultServer();

  [[nodiscard]] int port() const { return socket_.port(); }

 private:
  void serve();
  void breakDown(Socket connection);
  void sendFirstHalf(const Socket& connection) const;

  const Reply& reply_;
  std::function<void()> onHang_;
  Socket socket_;
  std::thread thread_;
};

}  // namespace sim
