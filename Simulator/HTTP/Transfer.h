// One HTTP request and its answer over a socket. No redirects, and no virtual time.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Simulator/HTTP/Header.h"
#include "Simulator/HTTP/URLError.h"

namespace sim {

struct HTTPRequest {
  std::string method;
  std::string url;
  std::vector<HTTPHeader> headers;
  std::optional<std::string> body;
};

struct HTTPResponse {
  // Of the request that it answers, which differs from the first one's after a redirect.
  std::string url;
  int status = 0;
  std::vector<HTTPHeader> headers;
};

struct HTTPOutcome {
  // Also when the exchange failed after the answer's head.
  std::optional<HTTPResponse> response;
  // Complete unless there is an error.
  std::string body;
  // A time-out has taken no time: how long it is, the caller knows.
  std::optional<URLError> error;
};

// Where the URL of an HTTP request leads, with its parts as they are written.
struct Location {
  // Host, and port if there is one; user names and passwords go nowhere.
  std::string authority;
  // What the request line names: path and query.
  std::string target;
};

// Where a request really goes, whatever its URL says.
struct Route {
  // A name that stands for no host, or an address of this machine.
  std::string host = "127.0.0.1";
  int port = 0;
  bool usesTLS = false;
};

class Transfer {
 public:
  Transfer() = default;
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;
  virtual ~Transfer() = default;

  // Once. Waits for the end; the connection is closed when this returns. `location` is that of the
  // request's URL.
  virtual HTTPOutcome run(const HTTPRequest& request, const Location& location,
                          const Route& route) = 0;

  // Tells that the other end answers no more, which ends run(). Any thread.
  virtual void giveUp() = 0;
};

}  // namespace sim
