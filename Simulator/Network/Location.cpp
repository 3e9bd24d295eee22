#include "Simulator/Network/Location.h"

#include <algorithm>

namespace sim {

std::optional<Location> locate(std::string_view url) {
  constexpr std::string_view separator = "://";
  const std::size_t schemeEnd = url.find(separator);
  if (schemeEnd == std::string_view::npos) return std::nullopt;
  const std::string scheme = lowerCase(url.substr(0, schemeEnd));
  if (scheme != "http" && scheme != "https") return std::nullopt;
  url.remove_prefix(schemeEnd + separator.size());
  url = url.substr(0, url.find('#'));
  const std::size_t authorityEnd = std::min(url.find_first_of("/?"), url.size());
  const std::string_view authority = url.substr(0, authorityEnd);
  const std::string_view target = url.substr(authorityEnd);
  Location location{std::string(authority.substr(authority.rfind('@') + 1)),
                    (target.starts_with('/') ? "" : "/") + std::string(target)};
  const bool hasHost = !location.authority.empty() && location.authority.front() != ':';
  return hasHost ? std::optional(std::move(location)) : std::nullopt;
}

}  // namespace sim
