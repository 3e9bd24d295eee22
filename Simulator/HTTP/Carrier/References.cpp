// References by libcurl.

#include <curl/curl.h>

#include <memory>

#include "Simulator/HTTP/Carrier/Carrier.h"

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

std::optional<std::string> carrier::resolve(const std::string& base, const std::string& reference) {
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

}  // namespace sim
