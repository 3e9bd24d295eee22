// The page on which a payload is tried and a scenario is played. It listens on loopback alone, and
// answers nobody but itself: other names, other origins, and bodies that are large, compressed or
// of no stated length are refused.

#pragma once

#include <memory>
#include <string>

namespace sim {

class PageServer {
 public:
  // `program` is the zibsim that plays scenarios. Needs foundation::install(). Throws
  // std::runtime_error where the port cannot be had; 0 takes any that is free.
  PageServer(int port, std::string program);
  PageServer(const PageServer&) = delete;
  PageServer& operator=(const PageServer&) = delete;
  ~PageServer();

  [[nodiscard]] int port() const noexcept;
  // Until stop() is called, on another thread.
  void serve();
  void stop();

 private:
  struct Server;
  std::unique_ptr<Server> server_;
};

}  // namespace sim
