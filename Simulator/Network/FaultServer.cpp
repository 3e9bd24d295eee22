#include "Simulator/Network/FaultServer.h"

#include <algorithm>

namespace sim {
namespace {

constexpr std::size_t chunk = 4096;

void receiveRequestHead(const Socket& connection) {
  std::string head;
  while (head.find("\r\n\r\n") == std::string::npos) {
    const std::string more = connection.receive(chunk);
    if (more.empty()) return;
    head += more;
  }
}

void receiveUntilClosed(const Socket& connection) {
  while (!connection.receive(chunk).empty()) {
  }
}

}  // namespace

FaultServer::FaultServer(const Reply& reply, std::function<void()> onHang)
    : reply_(reply), onHang_(std::move(onHang)), socket_(Socket::bound()) {
  if (reply.fault == Fault::refuse) return;
  socket_.listen();
  thread_ = std::thread([this] { serve(); });
}

FaultServer::~FaultServer() {
  if (!thread_.joinable()) return;
  socket_.shutDown();
  thread_.join();
}

void FaultServer::serve() {
  Socket connection = socket_.accept();
  if (connection) breakDown(std::move(connection));
}

void FaultServer::breakDown(Socket connection) {
  if (reply_.fault == Fault::tls) {
    static_cast<void>(connection.receive(chunk));
    connection.send("HTTP/1.1 400 Bad Request\r\n\r\n");
    connection.endSending();
    receiveUntilClosed(connection);
    return;
  }
  receiveRequestHead(connection);
  sendFirstHalf(connection);
  if (reply_.fault == Fault::reset) {
    connection.reset();
    return;
  }
  if (reply_.fault == Fault::truncate) {
    connection.endSending();
  } else {
    onHang_();
  }
  receiveUntilClosed(connection);
}

void FaultServer::sendFirstHalf(const Socket& connection) const {
  const std::string& body = reply_.body;
  if (body.empty() && reply_.fault != Fault::truncate) return;
  const std::size_t announced = std::max<std::size_t>(body.size(), 1);
  std::string head = "HTTP/1.1 " + std::to_string(reply_.status) + " \r\n";
  for (const HTTPHeader& header : reply_.headers) {
    head += header.name + ": " + header.value + "\r\n";
  }
  head += "Content-Length: " + std::to_string(announced) + "\r\n\r\n";
  connection.send(head);
  connection.send(std::string_view(body).substr(0, body.size() / 2));
}

}  // namespace sim
