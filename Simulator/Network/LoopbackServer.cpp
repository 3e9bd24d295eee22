#include "Simulator/Network/LoopbackServer.h"

#include <limits>

#include "Simulator/HTTP/Library.h"

namespace sim {
namespace {

ServedResponse answer(const Sites& sites, const ServedRequest& request) {
  const Reply* const found = findReply(sites, request.header("Host").value_or(""), request.target);
  constexpr int misdirectedRequest = 421;
  if (found == nullptr) return {misdirectedRequest, {}, {}};
  return {found->status, found->headers, found->body};
}

}  // namespace

LoopbackServer::LoopbackServer(const Sites& sites)
    : server_(httpLibrary().makeServer(
          {.answer = [&sites](const ServedRequest& request) { return answer(sites, request); },
           .largestBody = std::numeric_limits<std::size_t>::max()})),
      thread_([this] { server_->serve(); }) {
  while (!server_->isServing()) std::this_thread::yield();
}

LoopbackServer::~LoopbackServer() {
  server_->stop();
  thread_.join();
}

int LoopbackServer::port() const noexcept { return server_->port(); }

}  // namespace sim
