#include "Simulator/HTTP/Server.h"

#include <strings.h>

#include <algorithm>

namespace sim {
namespace {

template <class IsName>
std::optional<std::string> first(const std::vector<HTTPHeader>& list, IsName isName) {
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const HTTPHeader& each) { return isName(each.name); });
  return found == list.end() ? std::nullopt : std::optional(found->value);
}

}  // namespace

std::optional<std::string> ServedRequest::header(std::string_view name) const {
  return first(headers, [&](const std::string& each) {
    return each.size() == name.size() && ::strncasecmp(each.data(), name.data(), name.size()) == 0;
  });
}

std::optional<std::string> ServedRequest::parameter(std::string_view name) const {
  return first(parameters, [&](const std::string& each) { return each == name; });
}

}  // namespace sim
