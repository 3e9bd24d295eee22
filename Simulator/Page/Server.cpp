#include "Simulator/Page/Server.h"

#include <httplib.h>

#include <array>
#include <atomic>
#include <stdexcept>

#include "Simulator/Inspect/Inspection.h"
#include "Simulator/Network/Location.h"
#include "Simulator/Page/Assets.h"
#include "Simulator/Page/Document.h"
#include "Simulator/Page/InspectionView.h"
#include "Simulator/Page/Playing.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "ZibMessaging/Private/NotificationEvent.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace sim {
namespace {

using httplib::Request;
using httplib::Response;
using httplib::Server;

constexpr std::size_t largestBody = std::size_t{1} << 20U;

enum Status {
  ok = 200,
  forbidden = 403,
  methodNotAllowed = 405,
  lengthRequired = 411,
  unsupportedMediaType = 415,
  misdirected = 421,
  unprocessable = 422,
  busy = 503,
};

constexpr const char* html = "text/html; charset=utf-8";

// Whatever a payload holds: nothing but the page's own files is loaded or run.
const httplib::Headers& headersOfAll() {
  static const httplib::Headers headers{
      {"Content-Security-Policy",
       "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
       "img-src data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
      {"X-Content-Type-Options", "nosniff"},
      {"Referrer-Policy", "no-referrer"},
      {"Cache-Control", "no-store"},
      {"Cross-Origin-Resource-Policy", "same-origin"},
      {"Cross-Origin-Opener-Policy", "same-origin"},
  };
  return headers;
}

void refuse(Response& response, int status, const std::string& why) {
  response.status = status;
  Markup message;
  message.element("p", why, {{"class", "failure"}, {"data-summary", why}});
  response.set_content(partialDocument("Refused", message), html);
}

// A name that some site has pointed at this computer is another name. Capitals make none.
bool isOwnHost(std::string_view host, int port) {
  const std::string end = ":" + std::to_string(port);
  const std::string lower = lowerCase(host);
  return lower == "127.0.0.1" + end || lower == "localhost" + end;
}

bool isOwnOrigin(const Request& request, int port) {
  if (request.has_header("Origin")) {
    const std::string scheme = "http://";
    const std::string origin = request.get_header_value("Origin");
    return origin.starts_with(scheme) &&
           isOwnHost(std::string_view(origin).substr(scheme.size()), port);
  }
  const std::string site = request.get_header_value("Sec-Fetch-Site");
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

bool hasRightMethod(const Request& request, Response& response) {
  const std::string methods = methodsOf(request.path);
  if (methods.empty() || methods.find(request.method) != std::string::npos) return true;
  refuse(response, methodNotAllowed, "this address takes " + methods + " alone");
  response.set_header("Allow", methods);
  return false;
}

// The library takes bodies without a length, and compressed ones, however long they become.
bool hasBoundedBody(const Request& request, Response& response) {
  if (request.method == "GET" || request.method == "HEAD") return true;
  if (!request.has_header("Content-Length") || request.has_header("Transfer-Encoding")) {
    refuse(response, lengthRequired, "the request does not say how long its body is");
  } else if (request.has_header("Content-Encoding") ||
             !request.get_header_value("Content-Type").starts_with("application/json")) {
    refuse(response, unsupportedMediaType, "the body has to be plain JSON");
  } else {
    return true;
  }
  return false;
}

Server::HandlerResponse admit(const Request& request, Response& response, int port) {
  if (!isOwnHost(request.get_header_value("Host"), port)) {
    refuse(response, misdirected, "this page has no such name");
  } else if (!isOwnOrigin(request, port)) {
    refuse(response, forbidden, "another site's page may not ask");
  } else if (hasRightMethod(request, response) && hasBoundedBody(request, response)) {
    return Server::HandlerResponse::Unhandled;
  }
  return Server::HandlerResponse::Handled;
}

void inspectBody(const Request& request, Response& response) {
  const zib::AutoreleasePool pool;
  const std::string eventType = request.has_param("event-type")
                                    ? request.get_param_value("event-type")
                                    : std::string(zib::clickedEvent.text);
  try {
    const Inspection inspection = inspect(request.body, eventType);
    response.set_content(partialDocument("A payload", viewOf(inspection)), html);
  } catch (const ScenarioError& error) {
    refuse(response, unprocessable, error.what());
  }
}

// Scenarios are played a few at a time: each takes processes.
class Plays {
 public:
  explicit Plays(std::string program) : program_(std::move(program)) {}

  void play(const Request& request, Response& response) {
    constexpr int most = 2;
    if (++running_ > most) {
      refuse(response, busy, "other scenarios are being played; try again when they have ended");
    } else {
      Played played = playForPage(program_, request.body);
      if (played.document) {
        response.set_content(partialFrom(std::move(*played.document)), html);
      } else {
        refuse(response, unprocessable, played.problem);
      }
    }
    --running_;
  }

 private:
  std::string program_;
  std::atomic<int> running_{0};
};

void serveAsset(Server& server, const std::string& path, std::string_view text, const char* type) {
  server.Get(path, [text, type](const Request&, Response& response) {
    response.set_content(text.data(), text.size(), type);
  });
}

}  // namespace

struct PageServer::Server {
  explicit Server(std::string program) : plays(std::move(program)) {}

  httplib::Server http;
  Plays plays;
  int port = 0;
  socket_t listener = INVALID_SOCKET;
};

PageServer::PageServer(int port, std::string program)
    : server_(std::make_unique<Server>(std::move(program))) {
  httplib::Server& http = server_->http;
  // Not the library's, which share the port with whoever listens there already.
  http.set_socket_options([this](socket_t socket) {
    server_->listener = socket;
    const int yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
  http.set_payload_max_length(largestBody);
  // Each connection has a thread, also one that says nothing: browsers open some in advance.
  static constexpr std::size_t threads = 64;
  http.new_task_queue = [] { return std::make_unique<httplib::ThreadPool>(threads).release(); };
  // What was not read of a refused body must not be taken for the next request.
  http.set_keep_alive_max_count(1);
  constexpr time_t idleness = 2;  // seconds
  http.set_keep_alive_timeout(idleness);
  constexpr time_t patience = 5;  // seconds
  http.set_read_timeout(patience);
  http.set_write_timeout(patience);
  http.set_default_headers(headersOfAll());
  http.set_pre_routing_handler([this](const Request& request, Response& response) {
    return admit(request, response, server_->port);
  });
  http.set_error_handler([](const Request&, Response& response) {
    if (response.body.empty()) {
      refuse(response, response.status, "refused: status " + std::to_string(response.status));
    }
  });
  serveAsset(http, pagePath, assets::page, html);
  serveAsset(http, stylePath, assets::style, "text/css; charset=utf-8");
  serveAsset(http, scriptPath, assets::script, "text/javascript; charset=utf-8");
  http.Post(inspectPath, &inspectBody);
  http.Post(playPath, [this](const Request& request, Response& response) {
    server_->plays.play(request, response);
  });
  const char* const loopback = "127.0.0.1";
  const bool isBound = port == 0 ? (server_->port = http.bind_to_any_port(loopback)) > 0
                                 : http.bind_to_port(loopback, port);
  if (port != 0) server_->port = port;
  if (!isBound) throw std::runtime_error("cannot listen on port " + std::to_string(port));
  // The library lets five wait, and whoever comes then would wait for a second.
  ::listen(server_->listener, SOMAXCONN);
}

PageServer::~PageServer() = default;

int PageServer::port() const noexcept { return server_->port; }

void PageServer::serve() { server_->http.listen_after_bind(); }

void PageServer::stop() { server_->http.stop(); }

}  // namespace sim
