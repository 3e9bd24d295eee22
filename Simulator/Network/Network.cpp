#include "Simulator/Network/Network.h"

#include <algorithm>
#include <array>

#include "Simulator/HTTP/Library.h"
#include "Simulator/Network/FaultServer.h"
#include "Simulator/Network/Location.h"

namespace sim {
namespace {

const std::string* redirectTarget(const HTTPResponse& response) {
  constexpr std::array redirects{301, 302, 303, 307, 308};
  if (std::find(redirects.begin(), redirects.end(), response.status) == redirects.end()) {
    return nullptr;
  }
  return headerValue(response.headers, "location");
}

// The request that a redirect leads to; none where it leads nowhere.
std::optional<HTTPRequest> redirected(HTTPRequest request, int status, const std::string& target) {
  auto url = httpLibrary().resolve(request.url, target);
  if (!url) return std::nullopt;
  request.url = *std::move(url);
  constexpr int seeOther = 303;
  constexpr int temporaryRedirect = 307;
  const bool keepsMethod = status >= temporaryRedirect || request.method == "HEAD" ||
                           (request.method != "POST" && status != seeOther);
  if (!keepsMethod) {
    request.method = "GET";
    request.body.reset();
  }
  return request;
}

}  // namespace

HTTPOutcome Network::exchange(HTTPRequest request) {
  constexpr int mostRedirects = 20;  // the platform's
  for (int count = 0; count <= mostRedirects; ++count) {
    HTTPOutcome outcome = exchangeOnce(request);
    const std::string* const target =
        outcome.response && !outcome.error ? redirectTarget(*outcome.response) : nullptr;
    if (target == nullptr) return outcome;
    auto next = redirected(std::move(request), outcome.response->status, *target);
    if (!next) return {std::move(outcome.response), {}, URLError::unsupportedURL};
    request = *std::move(next);
  }
  return {{}, {}, URLError::httpTooManyRedirects};
}

HTTPOutcome Network::exchangeOnce(const HTTPRequest& request) {
  const auto location = locate(request.url);
  if (!location) return {{}, {}, URLError::unsupportedURL};
  const Reply* const reply = findReply(sites_, location->authority, location->target);
  if (reply == nullptr) return {{}, {}, URLError::notConnectedToInternet};
  const auto transfer = httpLibrary().makeTransfer();
  if (reply->fault == Fault::none) return transfer->run(request, *location, {.port = serverPort()});
  if (reply->fault == Fault::unknownHost) {
    // Longer than a label of a host name can be, so no resolver asks anybody for it.
    constexpr std::size_t tooLong = 64;
    return transfer->run(request, *location, {.host = std::string(tooLong, 'x'), .port = 80});
  }
  const FaultServer server(*reply, [&transfer] { transfer->giveUp(); });
  return transfer->run(request, *location,
                       {.port = server.port(), .usesTLS = reply->fault == Fault::tls});
}

int Network::serverPort() {
  const std::lock_guard lock(mutex_);
  if (!server_) server_.emplace(sites_);
  return server_->port();
}

}  // namespace sim
