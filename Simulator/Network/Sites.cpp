#include "Simulator/Network/Sites.h"

#include "Simulator/Network/Location.h"

namespace sim {

std::string listedHost(std::string_view host) {
  const bool isBracketed = host.starts_with('[');
  const std::size_t port = host.find(':', isBracketed ? host.find(']') : 0);
  return lowerCase(host.substr(0, port));
}

const Reply* findReply(const Sites& sites, std::string_view host, std::string_view target) {
  static const Reply notFound{404, {}, {}, Fault::none};
  const auto site = sites.find(listedHost(host));
  if (site == sites.end()) return nullptr;
  const auto reply = site->second.find(target);
  return reply == site->second.end() ? &notFound : &reply->second;
}

}  // namespace sim
