#include "Simulator/Page/Server.h"

#include <atomic>
#include <optional>
#include <utility>

#include "Simulator/HTTP/Library.h"
#include "Simulator/Inspect/Inspection.h"
#include "Simulator/Network/Location.h"
#include "Simulator/Page/Assets.h"
#include "Simulator/Page/InspectionView.h"
#include "Simulator/Page/PageDocument.h"
#include "Simulator/Page/Playing.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "ZibMessaging/Private/NotificationEvent.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace sim {
namespace {

enum Status {
  ok = 200,
  badRequest = 400,
  forbidden = 403,
  notFound = 404,
  methodNotAllowed = 405,
  lengthRequired = 411,
  unsupportedMediaType = 415,
  misdirected = 421,
  unprocessable = 422,
  busy = 503,
};

constexpr const char* html = "text/html; charset=utf-8";

// Whatever a payload holds: nothing but the page's own files is loaded or run.
std::vector<HTTPHeader> headersOfAll() {
  return {
      {"Content-Security-Policy",
       "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
       "img-src data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
      {"X-Content-Type-Options", "nosniff"},
      {"Referrer-Policy", "no-referrer"},
      {"Cache-Control", "no-store"},
      {"Cross-Origin-Resource-Policy", "same-origin"},
      {"Cross-Origin-Opener-Policy", "same-origin"},
  };
}

ServedResponse content(std::string body, const char* type = html) {
  return {ok, {{"Content-Type", type}}, std::move(body)};
}

ServedResponse refusal(int status, const std::string& why) {
  Markup message;
  message.element("p", why, {{"class", "failure"}, {"data-summary", why}});
  ServedResponse response = content(partialDocument("Refused", message));
  response.status = status;
  return response;
}

ServedResponse refusal(int status) {
  return refusal(status, "refused: status " + std::to_string(status));
}

// A name that some site has pointed at this computer is another name. Capitals make none.
bool isOwnHost(std::string_view host, int port) {
  const std::string end = ":" + std::to_string(port);
  const std::string lower = lowerCase(host);
  return lower == "127.0.0.1" + end || lower == "localhost" + end;
}

bool isOwnOrigin(const ServedRequest& request, int port) {
  if (const auto origin = request.header("Origin")) {
    const std::string scheme = "http://";
    return origin->starts_with(scheme) &&
           isOwnHost(std::string_view(*origin).substr(scheme.size()), port);
  }
  const std::string site = request.header("Sec-Fetch-Site").value_or("");
  return site.empty() || site == "same-origin" || site == "none" || request.method == "GET";
}

constexpr const char* pagePath = "/";
constexpr const char* stylePath = "/page.css";
constexpr const char* scriptPath = "/page.js";
constexpr const char* inspectPath = "/inspect";
constexpr const char* playPath = "/play";

// The methods that a path is there for; empty for one that is not there.
std::string methodsOf(std::string_view path) {
  if (path == inspectPath || path == playPath) return "POST";
  return path == pagePath || path == stylePath || path == scriptPath ? "GET, HEAD" : "";
}

// None where the method is one that the path is there for.
std::optional<ServedResponse> refusalOfMethod(const ServedRequest& request) {
  const std::string methods = methodsOf(request.path);
  const bool isThere = (" " + methods + ",").find(" " + request.method + ",") != std::string::npos;
  if (methods.empty() || isThere) return std::nullopt;
  ServedResponse response = refusal(methodNotAllowed, "this address takes " + methods + " alone");
  response.headers.push_back({"Allow", methods});
  return response;
}

// The library takes bodies without a length, and compressed ones, however long they become.
std::optional<ServedResponse> refusalOfBody(const ServedRequest& request) {
  if (request.method == "GET" || request.method == "HEAD") return std::nullopt;
  if (!request.header("Content-Length") || request.header("Transfer-Encoding")) {
    return refusal(lengthRequired, "the request does not say how long its body is");
  }
  if (request.header("Content-Encoding") ||
      !request.header("Content-Type").value_or("").starts_with("application/json")) {
    return refusal(unsupportedMediaType, "the body has to be plain JSON");
  }
  return std::nullopt;
}

std::optional<ServedResponse> admit(const ServedRequest& request, int port) {
  if (!isOwnHost(request.header("Host").value_or(""), port)) {
    return refusal(misdirected, "this page has no such name");
  }
  if (!isOwnOrigin(request, port)) return refusal(forbidden, "another site's page may not ask");
  auto refused = refusalOfMethod(request);
  return refused ? refused : refusalOfBody(request);
}

// The library reads no further than a method that it does not know.
ServedResponse refuseUnread(const ServedRequest& request, int status) {
  if (status == badRequest && request.path.empty() && !request.method.empty()) {
    ServedRequest known = request;
    known.path = request.target.substr(0, request.target.find('?'));
    if (auto refused = refusalOfMethod(known)) return *std::move(refused);
  }
  return refusal(status);
}

ServedResponse inspectBody(const ServedRequest& request) {
  const zib::AutoreleasePool pool;
  const std::string eventType =
      request.parameter("event-type").value_or(std::string(zib::clickedEvent.text));
  try {
    const Inspection inspection = inspect(request.body, eventType);
    return content(partialDocument("A payload", viewOf(inspection)));
  } catch (const ScenarioError& error) {
    return refusal(unprocessable, error.what());
  }
}

// Scenarios are played a few at a time: each takes processes.
class Plays {
 public:
  explicit Plays(std::string program) : program_(std::move(program)) {}

  ServedResponse play(const ServedRequest& request) {
    constexpr int most = 2;
    const bool isOneTooMany = ++running_ > most;
    ServedResponse response =
        isOneTooMany
            ? refusal(busy, "other scenarios are being played; try again when they have ended")
            : responseTo(request);
    --running_;
    return response;
  }

 private:
  [[nodiscard]] ServedResponse responseTo(const ServedRequest& request) const {
    Played played = playForPage(program_, request.body);
    if (!played.document) return refusal(unprocessable, played.problem);
    return content(partialFrom(std::move(*played.document)));
  }

  std::string program_;
  std::atomic<int> running_{0};
};

ServedResponse answer(const ServedRequest& request, Plays& plays) {
  if (request.path == pagePath) return content(std::string(assets::page));
  if (request.path == stylePath) {
    return content(std::string(assets::style), "text/css; charset=utf-8");
  }
  if (request.path == scriptPath) {
    return content(std::string(assets::script), "text/javascript; charset=utf-8");
  }
  if (request.path == inspectPath) return inspectBody(request);
  if (request.path == playPath) return plays.play(request);
  return refusal(notFound);
}

}  // namespace

struct PageServer::Server {
  explicit Server(std::string program) : plays(std::move(program)) {}

  Plays plays;
  std::unique_ptr<HTTPServer> http;
};

PageServer::PageServer(int port, std::string program)
    : server_(std::make_unique<Server>(std::move(program))) {
  Server& server = *server_;
  server.http = httpLibrary().makeServer({
      .port = port,
      .admit =
          [&server](const ServedRequest& request) { return admit(request, server.http->port()); },
      .answer = [&server](const ServedRequest& request) { return answer(request, server.plays); },
      .refuse = &refuseUnread,
      .headers = headersOfAll(),
      // Each connection has a thread, also one that says nothing: browsers open some in advance.
      .threads = 64,
  });
}

PageServer::~PageServer() = default;

int PageServer::port() const noexcept { return server_->http->port(); }

void PageServer::serve() { server_->http->serve(); }

void PageServer::stop() { server_->http->stop(); }

}  // namespace sim
