#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "Simulator/HTTP/Library.h"
#include "Simulator/Network/Location.h"
#include "Simulator/Network/Socket.h"

namespace {

// What goes over the wire for a request, byte by byte.
std::string wireFor(const sim::HTTPRequest& request) {
  sim::Socket listener = sim::Socket::bound();
  listener.listen();
  std::string head;
  std::thread server([&] {
    const sim::Socket connection = listener.accept();
    while (head.find("\r\n\r\n") == std::string::npos ||
           (request.body && !head.ends_with(*request.body))) {
      const std::string more = connection.receive(1000);
      if (more.empty()) return;
      head += more;
    }
    connection.send("HTTP/1.1 204 No Content\r\n\r\n");
  });
  const auto outcome = sim::httpLibrary().makeTransfer()->run(
      request, sim::locate(request.url).value(), {.port = listener.port()});
  server.join();
  EXPECT_FALSE(outcome.error);
  return head;
}

TEST(TransferTest, SendsTheRequestAndNothingElse) {
  EXPECT_EQ(wireFor({"GET",
                     "https://config.example/push.json?a=b%20c",
                     {{"Content-Type", "application/json"}},
                     std::nullopt}),
            "GET /push.json?a=b%20c HTTP/1.1\r\n"
            "Host: config.example\r\n"
            "Content-Type: application/json\r\n\r\n");
}

TEST(TransferTest, SendsNoHeadersOfItsOwn) {
  EXPECT_EQ(wireFor({"GET", "http://config.example:8080/../x/./y?#z", {}, std::nullopt}),
            "GET /../x/./y? HTTP/1.1\r\nHost: config.example:8080\r\n\r\n");
}

TEST(TransferTest, SendsABody) {
  EXPECT_EQ(wireFor({"POST", "http://config.example/", {{"X-Empty", ""}}, "sent"}),
            "POST / HTTP/1.1\r\nHost: config.example\r\nX-Empty:\r\nContent-Length: 4\r\n\r\nsent");
}

}  // namespace
