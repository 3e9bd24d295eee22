#include "Simulator/Network/Socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace sim {
namespace {

void require(bool isDone, const char* what) {
  if (!isDone) throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

// The call again for as long as a signal breaks it off.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace

Socket::~Socket() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

Socket Socket::bound() {
  Socket socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  require(static_cast<bool>(socket), "no socket");
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const auto* const any = reinterpret_cast<const sockaddr*>(&address);
  require(::bind(socket.descriptor_, any, sizeof(address)) == 0, "no port on loopback");
  return socket;
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes the socket
void Socket::listen() { require(::listen(descriptor_, 1) == 0, "no connections on loopback"); }

Socket Socket::accept() const {
  return Socket(uninterrupted([&] { return ::accept(descriptor_, nullptr, nullptr); }));
}

int Socket::port() const {
  sockaddr_in address{};
  socklen_t size = sizeof(address);
  auto* const own = reinterpret_cast<sockaddr*>(&address);
  require(::getsockname(descriptor_, own, &size) == 0, "a socket without a port");
  return ntohs(address.sin_port);
}

std::string Socket::receive(std::size_t most) const {
  std::string bytes(most, '\0');
  const ssize_t count =
      uninterrupted([&] { return ::recv(descriptor_, bytes.data(), bytes.size(), 0); });
  bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return bytes;
}

void Socket::send(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t count = uninterrupted(
        [&] { return ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL); });
    if (count < 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void Socket::endSending() const { ::shutdown(descriptor_, SHUT_WR); }

void Socket::shutDown() const { ::shutdown(descriptor_, SHUT_RDWR); }

void Socket::reset() {
  const linger atOnce{1, 0};
  ::setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof(atOnce));
  ::close(std::exchange(descriptor_, -1));
}

}  // namespace sim
