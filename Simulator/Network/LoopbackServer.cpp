#include "Simulator/Network/LoopbackServer.h"

#include <httplib.h>

#include <stdexcept>
#include <thread>

namespace sim {

struct LoopbackServer::Server {
  httplib::Server http;
  int port = 0;
  std::thread thread;
};

LoopbackServer::LoopbackServer(const Sites& sites) : server_(std::make_unique<Server>()) {
  httplib::Server& http = server_->http;
  const auto answer = [&sites](const httplib::Request& request, httplib::Response& response) {
    const Reply* const found = findReply(sites, request.get_header_value("Host"), request.target);
    constexpr int misdirectedRequest = 421;
    response.status = found == nullptr ? misdirectedRequest : found->status;
    if (found == nullptr) return;
    for (const zib::HTTPHeader& header : found->headers) {
      response.set_header(header.name, header.value);
    }
    response.body = found->body;
  };
  const std::string anyTarget = R"([\s\S]*)";
  http.Get(anyTarget, answer);
  http.Post(anyTarget, answer);
  http.Put(anyTarget, answer);
  http.Patch(anyTarget, answer);
  http.Delete(anyTarget, answer);
  // Each exchange has a connection of its own, so that none depends on the one before.
  http.set_keep_alive_max_count(1);
  server_->port = http.bind_to_any_port("127.0.0.1");
  if (server_->port < 0) throw std::runtime_error("no port on loopback is free");
  server_->thread = std::thread([&http] { http.listen_after_bind(); });
  while (!http.is_running()) std::this_thread::yield();
}

LoopbackServer::~LoopbackServer() {
  server_->http.stop();
  server_->thread.join();
}

int LoopbackServer::port() const noexcept { return server_->port; }

}  // namespace sim
