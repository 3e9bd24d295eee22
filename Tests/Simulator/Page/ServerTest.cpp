// Who may ask the page's server, and for what.

#include "Simulator/Page/Server.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "Simulator/Foundation/Foundation.h"

namespace {

class ServerTest : public testing::Test {
 protected:
  ServerTest() {
    sim::foundation::install();
    server_.emplace(0, ZIBSIM_PATH);
    thread_ = std::thread([this] { server_->serve(); });
  }
  ~ServerTest() override {
    // A server that has not begun cannot be stopped: one that has answered has.
    static_cast<void>(get("/"));
    server_->stop();
    thread_.join();
  }

  [[nodiscard]] int port() const { return server_->port(); }
  [[nodiscard]] std::string host() const { return "127.0.0.1:" + std::to_string(port()); }

  [[nodiscard]] int connection() const {
    const int file = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port()));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(file, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    return file;
  }

  // What the server answers to these bytes until it closes the connection.
  [[nodiscard]] std::string answerTo(const std::string& request) const {
    const int file = connection();
    std::size_t sent = 0;
    while (sent < request.size()) {
      const ssize_t count =
          ::send(file, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
      if (count <= 0) break;
      sent += static_cast<std::size_t>(count);
    }
    std::string answer;
    std::string buffer(65536, '\0');
    for (ssize_t count = 1; (count = ::read(file, buffer.data(), buffer.size())) > 0;) {
      answer.append(buffer, 0, static_cast<std::size_t>(count));
    }
    ::close(file);
    return answer;
  }

  [[nodiscard]] std::string get(const std::string& path, const std::string& host) const {
    return answerTo("GET " + path + " HTTP/1.1\r\nHost: " + host + "\r\nConnection: close\r\n\r\n");
  }
  [[nodiscard]] std::string get(const std::string& path) const { return get(path, host()); }

  [[nodiscard]] std::string post(const std::string& path, const std::string& body,
                                 const std::string& headers = {}) const {
    return answerTo("POST " + path + " HTTP/1.1\r\nHost: " + host() + "\r\nConnection: close\r\n" +
                    "Content-Type: application/json\r\nContent-Length: " +
                    std::to_string(body.size()) + "\r\n" + headers + "\r\n" + body);
  }

  static std::string statusOf(const std::string& answer) {
    const std::string start = "HTTP/1.1 ";
    return answer.starts_with(start) ? answer.substr(start.size(), 3) : "none";
  }

 private:
  std::optional<sim::PageServer> server_;
  std::thread thread_;
};

TEST_F(ServerTest, ServesThePageAndItsFiles) {
  for (const char* const path : {"/", "/page.css", "/page.js"}) {
    const std::string answer = get(path);
    EXPECT_EQ(statusOf(answer), "200") << path;
    EXPECT_NE(answer.find("Content-Security-Policy: default-src 'none'; script-src 'self'"),
              std::string::npos);
    EXPECT_NE(answer.find("X-Content-Type-Options: nosniff"), std::string::npos);
  }
  EXPECT_EQ(statusOf(get("/other")), "404");
  EXPECT_EQ(statusOf(get("/../../etc/passwd")), "404");
}

TEST_F(ServerTest, InspectsAPayload) {
  const std::string answer = post("/inspect?event-type=notification-delivered",
                                  R"({"aps": {"alert": "<b>x"}, "club": "gold"})");
  EXPECT_EQ(statusOf(answer), "200");
  EXPECT_NE(answer.find("notification-delivered"), std::string::npos);
  EXPECT_NE(answer.find("&lt;b&gt;x"), std::string::npos);
  EXPECT_EQ(statusOf(post("/inspect", "[")), "422");
}

TEST_F(ServerTest, PlaysAScenario) {
  const std::string answer =
      post("/play", R"({"name": "n", "steps": [{"do": "state"}], "expect": [{"kind": "state"}]})");
  EXPECT_EQ(statusOf(answer), "200");
  EXPECT_NE(answer.find("n: passed"), std::string::npos);
  const std::string invalid = post("/play", R"({"steps": [{"do": "stat"}]})");
  EXPECT_EQ(statusOf(invalid), "422");
  EXPECT_NE(invalid.find("/steps/0/do: got &quot;stat&quot;"), std::string::npos);
}

TEST_F(ServerTest, ReadsNoFileForAScenario) {
  for (const std::string scenario :
       {R"({"network": {"a.b": {"/x": {"file": "/etc/hostname"}}}, "steps": []})",
        R"({"steps": [{"do": "present", "userInfoFile": "/etc/hostname"}]})"}) {
    const std::string answer = post("/play", scenario);
    EXPECT_EQ(statusOf(answer), "422");
    EXPECT_NE(answer.find("the page reads no files"), std::string::npos) << answer;
  }
  EXPECT_EQ(statusOf(post("/play", R"({"network": {"file": {}}, "steps": [
      {"do": "call", "operation": "willPresent", "arguments": {"userInfo": {"file": "x"}}}]})")),
            "200");
}

TEST_F(ServerTest, AnswersToNoOtherName) {
  const std::string port = std::to_string(this->port());
  for (const std::string name : {"localhost:", "LOCALHOST:", "LocalHost:"}) {
    EXPECT_EQ(statusOf(get("/", name + port)), "200") << name;
  }
  for (const std::string& name : {std::string("evil.example:") + port, std::string("127.0.0.1"),
                                  "127.0.0.1.evil.example:" + port, std::string()}) {
    EXPECT_EQ(statusOf(get("/", name)), "421") << name;
  }
}

TEST_F(ServerTest, NamesTheMethodsThatAnAddressTakes) {
  for (const std::string method : {"DELETE", "PUT", "OPTIONS", "POST", "PROPFIND", "ET"}) {
    const std::string answer =
        answerTo(method + " / HTTP/1.1\r\nHost: " + host() + "\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(statusOf(answer), "405") << method;
    EXPECT_NE(answer.find("Allow: GET, HEAD\r\n"), std::string::npos) << answer;
  }
  const std::string answer = get("/inspect");
  EXPECT_EQ(statusOf(answer), "405");
  EXPECT_NE(answer.find("Allow: POST\r\n"), std::string::npos) << answer;
}

// While it waits for what they will say, it has to answer others: without giving up on most of them
// first. A machine that is busy may keep it from that once.
TEST_F(ServerTest, AnswersBesideConnectionsThatSayNothing) {
  constexpr std::size_t connections = 40;
  std::size_t mostWaiting = 0;
  for (int attempt = 0; attempt < 3 && mostWaiting <= connections / 2; ++attempt) {
    std::vector<int> idle;
    while (idle.size() < connections) idle.push_back(connection());
    EXPECT_EQ(statusOf(get("/")), "200");
    std::size_t waiting = 0;
    for (const int file : idle) {
      char byte = 0;
      waiting += ::recv(file, &byte, 1, MSG_DONTWAIT) < 0 ? 1 : 0;
      ::close(file);
    }
    mostWaiting = std::max(mostWaiting, waiting);
  }
  EXPECT_GT(mostWaiting, connections / 2);
}

TEST_F(ServerTest, RefusesOtherOrigins) {
  EXPECT_EQ(statusOf(post("/inspect", "{}", "Origin: http://" + host() + "\r\n")), "200");
  for (const std::string header :
       {"Origin: http://evil.example", "Origin: null", "Origin: https://127.0.0.1",
        "Sec-Fetch-Site: cross-site", "Sec-Fetch-Site: same-site"}) {
    EXPECT_EQ(statusOf(post("/inspect", "{}", header + "\r\n")), "403") << header;
  }
}

TEST_F(ServerTest, BoundsWhatItReads) {
  const std::string start = "POST /inspect HTTP/1.1\r\nHost: " + host() + "\r\n";
  const std::string json = "Content-Type: application/json\r\n";
  EXPECT_EQ(statusOf(answerTo(start + json + "Content-Length: 104857600\r\n\r\n{")), "413");
  EXPECT_EQ(
      statusOf(answerTo(start + json + "Transfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n")),
      "411");
  EXPECT_EQ(statusOf(answerTo(start + json + "\r\n{}")), "411");
  EXPECT_EQ(statusOf(post("/inspect", "{}", "Content-Encoding: gzip\r\n")), "415");
  EXPECT_EQ(statusOf(answerTo(start + "Content-Type: multipart/form-data; boundary=x\r\n"
                                      "Content-Length: 2\r\n\r\n{}")),
            "415");
}

TEST_F(ServerTest, TakesNoRefusedBodyForARequest) {
  const std::string inner = "GET /page.css HTTP/1.1\r\nHost: " + host() + "\r\n\r\n";
  std::string request = "POST /inspect HTTP/1.1\r\nHost: " + host() +
                        "\r\nContent-Type: text/plain\r\nContent-Length: 65536\r\n\r\n";
  // Wherever it has stopped reading in powers of two, a request begins.
  constexpr std::size_t step = 4096;
  while (request.size() < std::size_t{4} * step) {
    request.append(step - request.size() % step, ' ').append(inner);
  }
  const std::string answer = answerTo(request);
  EXPECT_EQ(statusOf(answer), "415");
  EXPECT_EQ(answer.find("200 OK"), std::string::npos) << answer;
}

TEST_F(ServerTest, SurvivesHostileBodies) {
  const std::string deep(500'000, '[');
  EXPECT_EQ(statusOf(post("/inspect", deep)), "422");
  EXPECT_EQ(statusOf(post("/play", deep)), "422");
  EXPECT_EQ(statusOf(post("/inspect", "{\"a\": \"\xff\xfe\"}")), "422");
  EXPECT_EQ(statusOf(post("/play", "\xff\xfe{\"")), "422");
  EXPECT_EQ(statusOf(get("/")), "200");
}

TEST_F(ServerTest, SharesItsPortWithNobody) {
  EXPECT_THROW(sim::PageServer(port(), ZIBSIM_PATH), std::runtime_error);
}

}  // namespace
