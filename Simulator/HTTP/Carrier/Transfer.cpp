// A transfer by libcurl.

#include <curl/curl.h>

#include <atomic>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "Simulator/HTTP/Carrier/Carrier.h"

namespace sim {
namespace {

struct EasyDeleter {
  void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct ListDeleter {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using Easy = std::unique_ptr<CURL, EasyDeleter>;
using List = std::unique_ptr<curl_slist, ListDeleter>;

// No virtual time passes, so this only bounds what should never be: a server here that is stuck.
constexpr long realTimeLimit = 120;  // seconds

void append(List& list, const std::string& line) {
  curl_slist* const longer = curl_slist_append(list.get(), line.c_str());
  if (longer == nullptr) throw std::bad_alloc();
  static_cast<void>(list.release());
  list.reset(longer);
}

// Nothing goes out but what the request says: a header with an empty value takes libcurl's own
// away.
List headerLines(const HTTPRequest& request) {
  List lines;
  append(lines, "Accept:");
  append(lines, "Expect:");
  append(lines, "Content-Type:");
  for (const HTTPHeader& header : request.headers) {
    append(lines, header.value.empty() ? header.name + ";" : header.name + ": " + header.value);
  }
  return lines;
}

// Gets the answer as it comes.
struct Receiver {
  HTTPResponse response;
  std::string body;

  static std::size_t takeHeader(const char* data, std::size_t, std::size_t size, void* receiver) {
    static_cast<Receiver*>(receiver)->addHeader({data, size});
    return size;
  }
  static std::size_t takeBody(const char* data, std::size_t, std::size_t size, void* receiver) {
    static_cast<Receiver*>(receiver)->body.append(data, size);
    return size;
  }

 private:
  void addHeader(std::string_view line) {
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);
    if (line.starts_with("HTTP/")) response.headers.clear();  // the last of several heads counts
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) return;
    const std::size_t value = line.find_first_not_of(" \t", colon + 1);
    response.headers.push_back(
        {std::string(line.substr(0, colon)),
         std::string(value == std::string_view::npos ? "" : line.substr(value))});
  }
};

std::optional<URLError> errorFor(CURLcode code) {
  switch (code) {
    case CURLE_OK:
      return std::nullopt;
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_URL_MALFORMAT:
      return URLError::unsupportedURL;
    case CURLE_COULDNT_RESOLVE_HOST:
      return URLError::cannotFindHost;
    case CURLE_COULDNT_CONNECT:
      return URLError::cannotConnectToHost;
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
      return URLError::networkConnectionLost;
    case CURLE_OPERATION_TIMEDOUT:
      return URLError::timedOut;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
      return URLError::secureConnectionFailed;
    case CURLE_WEIRD_SERVER_REPLY:
      return URLError::badServerResponse;
    default:
      return URLError::unknown;
  }
}

void setUp(CURL* easy, const HTTPRequest& request) {
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_PROXY, "");
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  curl_easy_setopt(easy, CURLOPT_TIMEOUT, realTimeLimit);
  if (request.body) {
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE,
                     static_cast<curl_off_t>(request.body->size()));
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, request.body->data());
  }
  if (request.method == "HEAD") curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
  curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, request.method.c_str());
}

// None when it was given up.
std::optional<CURLcode> perform(CURLM* multi, const std::atomic<bool>& isGivenUp) {
  constexpr int longestWait = 1000;  // milliseconds; giving up wakes it
  int running = 1;
  while (running > 0) {
    curl_multi_perform(multi, &running);
    if (isGivenUp) return std::nullopt;
    if (running > 0) curl_multi_poll(multi, nullptr, 0, longestWait, nullptr);
  }
  int remaining = 0;
  const CURLMsg* const message = curl_multi_info_read(multi, &remaining);
  return message == nullptr ? CURLE_FAILED_INIT : message->data.result;
}

class CurlTransfer : public Transfer {
 public:
  CurlTransfer() {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    multi_ = initialised == CURLE_OK ? curl_multi_init() : nullptr;
    if (multi_ == nullptr) throw std::bad_alloc();
  }
  ~CurlTransfer() override { curl_multi_cleanup(multi_); }
  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;

  HTTPOutcome run(const HTTPRequest& request, const Location& location,
                  const Route& route) override;

  void giveUp() override {
    isGivenUp_ = true;
    curl_multi_wakeup(multi_);
  }

 private:
  // A member, since giveUp() must reach it.
  CURLM* multi_;
  std::atomic<bool> isGivenUp_ = false;
};

HTTPOutcome CurlTransfer::run(const HTTPRequest& request, const Location& location,
                              const Route& route) {
  const std::string url = (route.usesTLS ? "https://" : "http://") + location.authority;
  const Easy easy(curl_easy_init());
  const List headers = headerLines(request);
  List connectTo;
  append(connectTo, "::" + route.host + ":" + std::to_string(route.port));
  Receiver receiver;
  setUp(easy.get(), request);
  curl_easy_setopt(easy.get(), CURLOPT_URL, url.c_str());
  // libcurl would tidy the path up.
  curl_easy_setopt(easy.get(), CURLOPT_REQUEST_TARGET, location.target.c_str());
  curl_easy_setopt(easy.get(), CURLOPT_CONNECT_TO, connectTo.get());
  curl_easy_setopt(easy.get(), CURLOPT_HTTPHEADER, headers.get());
  curl_easy_setopt(easy.get(), CURLOPT_HEADERFUNCTION, &Receiver::takeHeader);
  curl_easy_setopt(easy.get(), CURLOPT_HEADERDATA, &receiver);
  curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, &Receiver::takeBody);
  curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &receiver);
  // A connection that is not kept for the next request is closed when this one is removed.
  curl_easy_setopt(easy.get(), CURLOPT_FORBID_REUSE, 1L);

  curl_multi_add_handle(multi_, easy.get());
  const std::optional<CURLcode> code = perform(multi_, isGivenUp_);
  long status = 0;
  curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &status);
  curl_multi_remove_handle(multi_, easy.get());

  HTTPOutcome outcome;
  outcome.error = code ? errorFor(*code) : URLError::timedOut;
  if (status != 0) {
    outcome.response = std::move(receiver.response);
    outcome.response->url = request.url;
    outcome.response->status = static_cast<int>(status);
  }
  if (!outcome.error) outcome.body = std::move(receiver.body);
  return outcome;
}

}  // namespace

std::unique_ptr<Transfer> carrier::makeTransfer() { return std::make_unique<CurlTransfer>(); }

}  // namespace sim
