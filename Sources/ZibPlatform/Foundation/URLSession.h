// HTTP exchanges on the shared URL session.

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/URL.h"

namespace zib {

struct HTTPHeader {
  std::string name;
  std::string value;
};

struct URLRequest {
  URL url;
  std::string method;
  std::vector<HTTPHeader> headers;
  double timeout;  // seconds
};

struct URLReply {
  // Empty when there is none. Valid during the handler's call.
  std::span<const std::uint8_t> body;
  // None without a response, and for one that is not of HTTP.
  std::optional<long> httpStatus;
  // What went wrong with the exchange; an HTTP status is never an error.
  std::optional<Error> error;
};

// Caching, cookies and credentials are those of the shared session, which the app's own requests
// use too.
class URLSession {
 public:
  // Called once, on a thread of the session's; on the caller's at once if the system starts no
  // exchange. Must not throw.
  using Handler = std::function<void(const URLReply&)>;

  URLSession() = delete;

  static void fetch(const URLRequest& request, const Handler& handler);
  // A plain GET with the session's defaults.
  static void fetch(const URL& url, const Handler& handler);
};

}  // namespace zib
