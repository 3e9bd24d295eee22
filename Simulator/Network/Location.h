// Where the URL of an HTTP request leads, with its parts as they are written.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sim {

struct Location {
  // Host, and port if there is one; user names and passwords go nowhere.
  std::string authority;
  // What the request line names: path and query.
  std::string target;
};

// None for what is no URL of http or https.
std::optional<Location> locate(std::string_view url);

// The URL to which a reference in `base`, which is a URL, leads, by RFC 3986: without the dots of a
// path. None for what is no reference, or names an empty host.
std::optional<std::string> resolve(const std::string& base, const std::string& reference);

// ASCII only, as in schemes, host names and header names.
std::string lowerCase(std::string_view text);

}  // namespace sim
