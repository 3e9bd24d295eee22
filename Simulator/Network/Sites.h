// The servers of a scenario: what they reply, and how an exchange with them goes wrong.

#pragma once

#include <map>
#include <string>
#include <vector>

#include "Simulator/HTTP/Header.h"
#include "Simulator/Json/Names.h"

namespace sim {

enum class Fault {
  none,
  hang,         // sends no more until the client gives up
  reset,        // breaks the connection off
  truncate,     // closes the connection before the body is complete
  tls,          // does not speak TLS
  refuse,       // takes no connection
  unknownHost,  // the host has no address
};

template <>
struct Names<Fault> {
  using enum Fault;
  static constexpr Named<Fault> rows[] = {{hang, "hang"},         {reset, "reset"},
                                          {truncate, "truncate"}, {tls, "tls"},
                                          {refuse, "refuse"},     {unknownHost, "unknownHost"}};
};

// A fault that strikes during the reply leaves the first half of the body; without a body it
// strikes before the reply's first byte, except that `truncate` then announces a body.
struct Reply {
  int status = 200;
  std::vector<HTTPHeader> headers;
  std::string body;
  Fault fault = Fault::none;
};

// By request target: the path as sent, with its query.
using Site = std::map<std::string, Reply, std::less<>>;
// By host name in lower case.
using Sites = std::map<std::string, Site, std::less<>>;

// The name by which a host is listed: in lower case, without a port.
std::string listedHost(std::string_view host);

// None where the host is not listed; a reply that says "not found" where only the target is not.
const Reply* findReply(const Sites& sites, std::string_view host, std::string_view target);

}  // namespace sim
