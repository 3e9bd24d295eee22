// A server of HTTP on loopback.

#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/HTTP/Header.h"

namespace sim {

struct ServedRequest {
  std::string method;
  // As sent, with its query; `path` is decoded, and without.
  std::string target;
  std::string path;
  std::vector<HTTPHeader> headers;
  // Of the query.
  std::vector<HTTPHeader> parameters;
  std::string body;

  // The first of this name, in capitals or not.
  [[nodiscard]] std::optional<std::string> header(std::string_view name) const;
  [[nodiscard]] std::optional<std::string> parameter(std::string_view name) const;
};

struct ServedResponse {
  int status = 200;
  std::vector<HTTPHeader> headers;
  std::string body;
};

class HTTPServer {
 public:
  // Called on any thread, several at once.
  struct Options {
    // 0 takes any that is free.
    int port = 0;
    // Before the body is read, which is not read where there is a response.
    std::function<std::optional<ServedResponse>(const ServedRequest&)> admit = {};
    std::function<ServedResponse(const ServedRequest&)> answer;
    // For a request that could not be read, such as one that is too long, as far as it was.
    std::function<ServedResponse(const ServedRequest&, int status)> refuse = {};
    // Of every response.
    std::vector<HTTPHeader> headers = {};
    std::size_t largestBody = std::size_t{1} << 20U;
    // How many exchanges can go on at a time. A connection carries one.
    std::size_t threads = 8;
    int patience = 5;  // seconds
  };

  HTTPServer() = default;
  HTTPServer(const HTTPServer&) = delete;
  HTTPServer& operator=(const HTTPServer&) = delete;
  virtual ~HTTPServer() = default;

  // Listens from the start.
  [[nodiscard]] virtual int port() const noexcept = 0;
  // Until stop() is called, on another thread.
  virtual void serve() = 0;
  [[nodiscard]] virtual bool isServing() const noexcept = 0;
  // Has no effect on a server that does not serve yet.
  virtual void stop() = 0;
};

}  // namespace sim
