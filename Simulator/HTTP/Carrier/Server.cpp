// A server by cpp-httplib.

#include <httplib.h>

#include <stdexcept>
#include <utility>

#include "Simulator/HTTP/Carrier/Carrier.h"

namespace sim {
namespace {

template <class Map>
std::vector<HTTPHeader> listOf(const Map& map) {
  std::vector<HTTPHeader> list;
  for (const auto& [name, value] : map) list.push_back({name, value});
  return list;
}

ServedRequest requestFrom(const httplib::Request& request) {
  return {request.method,          request.target,         request.path,
          listOf(request.headers), listOf(request.params), request.body};
}

void fill(httplib::Response& response, ServedResponse served) {
  response.status = served.status;
  for (const HTTPHeader& header : served.headers) {
    response.set_header(header.name, header.value);
  }
  response.body = std::move(served.body);
}

class LibraryServer : public HTTPServer {
 public:
  explicit LibraryServer(Options options) : options_(std::move(options)) {
    setLimits();
    setHandlers();
    const char* const loopback = "127.0.0.1";
    port_ = options_.port != 0 ? options_.port : http_.bind_to_any_port(loopback);
    if (port_ < 0 || (options_.port != 0 && !http_.bind_to_port(loopback, port_))) {
      throw std::runtime_error("cannot listen on port " + std::to_string(options_.port));
    }
    // The library lets five wait, and whoever comes then would wait for a second.
    ::listen(listener_, SOMAXCONN);
  }

  [[nodiscard]] int port() const noexcept override { return port_; }
  void serve() override { http_.listen_after_bind(); }
  [[nodiscard]] bool isServing() const noexcept override { return http_.is_running(); }
  void stop() override { http_.stop(); }

 private:
  void setLimits() {
    // Not the library's, which share the port with whoever listens there already.
    http_.set_socket_options([this](socket_t socket) {
      listener_ = socket;
      const int yes = 1;
      ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    http_.set_payload_max_length(options_.largestBody);
    http_.new_task_queue = [threads = options_.threads] {
      return std::make_unique<httplib::ThreadPool>(threads).release();
    };
    // What was not read of a refused body must not be taken for the next request.
    http_.set_keep_alive_max_count(1);
    constexpr time_t idleness = 2;  // seconds
    http_.set_keep_alive_timeout(idleness);
    http_.set_read_timeout(options_.patience);
    http_.set_write_timeout(options_.patience);
  }

  void setHandlers() {
    httplib::Headers headers;
    for (const HTTPHeader& header : options_.headers) {
      headers.emplace(header.name, header.value);
    }
    http_.set_default_headers(std::move(headers));
    const auto answer = [this](const httplib::Request& request, httplib::Response& response) {
      fill(response, options_.answer(requestFrom(request)));
    };
    const std::string anyTarget = R"([\s\S]*)";
    http_.Get(anyTarget, answer);
    http_.Post(anyTarget, answer);
    http_.Put(anyTarget, answer);
    http_.Patch(anyTarget, answer);
    http_.Delete(anyTarget, answer);
    if (options_.admit) {
      http_.set_pre_routing_handler(
          [this](const httplib::Request& request, httplib::Response& response) {
            auto refusal = options_.admit(requestFrom(request));
            if (!refusal) return httplib::Server::HandlerResponse::Unhandled;
            fill(response, *std::move(refusal));
            return httplib::Server::HandlerResponse::Handled;
          });
    }
    if (options_.refuse) {
      http_.set_error_handler([this](const httplib::Request& request, httplib::Response& response) {
        if (!response.body.empty()) return;
        fill(response, options_.refuse(requestFrom(request), response.status));
      });
    }
  }

  const Options options_;
  httplib::Server http_;
  int port_ = 0;
  socket_t listener_ = INVALID_SOCKET;
};

}  // namespace

std::unique_ptr<HTTPServer> carrier::makeServer(HTTPServer::Options options) {
  return std::make_unique<LibraryServer>(std::move(options));
}

}  // namespace sim
