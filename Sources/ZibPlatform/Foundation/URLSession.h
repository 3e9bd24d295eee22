// HTTP exchanges on the shared URL session.

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Block.h"

namespace zib {

// A field of a request's header.
struct RequestField {
  std::string_view name;
  std::string_view value;
};

// Read when the exchange starts.
struct URLRequest {
  const URL& url;
  std::string_view method;
  std::span<const RequestField> fields;
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
  URLSession() = delete;

  // The handler gets a URLReply, once, on a thread of the session's; on the caller's at once if the
  // system starts no exchange. Must not throw.
  template <class Handler>
  static void fetch(const URLRequest& request, const Handler& handler) {
    if (!start(request, completion(handler))) handler(notStarted());
  }
  // A plain GET with the session's defaults.
  template <class Handler>
  static void fetch(const URL& url, const Handler& handler) {
    if (!start(url, completion(handler))) handler(notStarted());
  }

 private:
  using Completion = Block<void(objc::id, objc::id, objc::id)>;

  template <class Handler>
  static Completion completion(const Handler& handler) {
    // Not by its name: that would be a constant, whose moves are copies.
    return Completion::from([handler = handler](objc::id body, objc::id response, objc::id error) {
      // The session's thread is not ours, and what the handler makes must not pile up on it.
      const AutoreleasePool pool;
      handler(reply(body, response, error));
    });
  }
  static URLReply reply(objc::id body, objc::id response, objc::id error);
  static URLReply notStarted();
  static bool start(const URLRequest& request, const Completion& completion);
  static bool start(const URL& url, const Completion& completion);
};

}  // namespace zib
