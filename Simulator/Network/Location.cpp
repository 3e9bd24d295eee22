#include "Simulator/Network/Location.h"

#include <curl/curl.h>

#include <algorithm>
#include <memory>

namespace sim {
namespace {

// libcurl takes the first part of the path for the host then.
bool hasEmptyAuthority(std::string_view reference) {
  const std::size_t colon = reference.find_first_of(":/?#");
  if (colon != std::string_view::npos && reference[colon] == ':') {
    reference.remove_prefix(colon + 1);
  }
  return reference.starts_with("///");
}

}  // namespace

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

std::optional<std::string> resolve(const std::string& base, const std::string& reference) {
  const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url(curl_url(), &curl_url_cleanup);
  constexpr unsigned anyScheme = CURLU_NON_SUPPORT_SCHEME;
  curl_url_set(url.get(), CURLUPART_URL, base.c_str(), anyScheme | CURLU_PATH_AS_IS);
  if (hasEmptyAuthority(reference) ||
      curl_url_set(url.get(), CURLUPART_URL, reference.c_str(), anyScheme) != CURLUE_OK) {
    return std::nullopt;
  }
  char* text = nullptr;
  if (curl_url_get(url.get(), CURLUPART_URL, &text, 0) != CURLUE_OK) return std::nullopt;
  const std::unique_ptr<char, decltype(&curl_free)> owner(text, &curl_free);
  return text;
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
  });
  return lower;
}

}  // namespace sim
