// A TCP socket on loopback, owned. Only for what must happen below HTTP.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace sim {

class Socket {
 public:
  Socket() = default;
  Socket(Socket&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Socket& operator=(Socket&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~Socket();

  // Has a port, but takes no connection until listen() is called.
  static Socket bound();
  void listen();
  // The next connection; an empty socket once the other end or shutDown() made an end of it.
  [[nodiscard]] Socket accept() const;

  explicit operator bool() const noexcept { return descriptor_ >= 0; }
  [[nodiscard]] int port() const;
  // Up to that many bytes; none at the end.
  [[nodiscard]] std::string receive(std::size_t most) const;
  // What the other end no longer takes is lost.
  void send(std::string_view bytes) const;
  void endSending() const;
  // Ends waiting calls of other threads too.
  void shutDown() const;
  // Closes so that the other end sees a connection reset.
  void reset();

 private:
  explicit Socket(int descriptor) : descriptor_(descriptor) {}

  int descriptor_ = -1;
};

}  // namespace sim
