#include "Simulator/HTTP/URLError.h"

namespace sim {
namespace {

const char* descriptionOf(URLError error) {
  switch (error) {
    case URLError::cancelled:
      return "cancelled";
    case URLError::timedOut:
      return "The request timed out.";
    case URLError::unsupportedURL:
      return "unsupported URL";
    case URLError::cannotFindHost:
      return "A server with the specified hostname could not be found.";
    case URLError::cannotConnectToHost:
      return "Could not connect to the server.";
    case URLError::networkConnectionLost:
      return "The network connection was lost.";
    case URLError::httpTooManyRedirects:
      return "too many HTTP redirects";
    case URLError::notConnectedToInternet:
      return "The Internet connection appears to be offline.";
    case URLError::badServerResponse:
      return "There was a bad response from the server.";
    case URLError::secureConnectionFailed:
      return "An SSL error has occurred and a secure connection to the server cannot be made.";
    case URLError::unknown:
      break;
  }
  return "unknown error";
}

}  // namespace

zib::Error errorFrom(URLError error) {
  return {"NSURLErrorDomain", static_cast<std::int64_t>(error), descriptionOf(error), {}};
}

}  // namespace sim
