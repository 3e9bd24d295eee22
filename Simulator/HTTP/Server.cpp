#include "Simulator/HTTP/Server.h"

#include <algorithm>

namespace sim {

std::optional<std::string> ServedRequest::header(std::string_view name) const {
  const std::string* const value = headerValue(headers, lowerCase(name));
  return value == nullptr ? std::nullopt : std::optional(*value);
}

std::optional<std::string> ServedRequest::parameter(std::string_view name) const {
  const auto found = std::find_if(parameters.begin(), parameters.end(),
                                  [&](const HTTPHeader& each) { return each.name == name; });
  return found == parameters.end() ? std::nullopt : std::optional(found->value);
}

}  // namespace sim
