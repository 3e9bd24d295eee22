// What carries HTTP, loaded the first time that somebody asks for it: with what it is made of
// (libcurl, cpp-httplib, OpenSSL, and what these use) it takes a quarter of a process's start, and
// most scenarios exchange nothing.

#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "Simulator/HTTP/Server.h"
#include "Simulator/HTTP/Transfer.h"

namespace sim {

struct HTTPLibrary {
  std::unique_ptr<Transfer> (*makeTransfer)();
  // Throws std::runtime_error where the port cannot be had.
  std::unique_ptr<HTTPServer> (*makeServer)(HTTPServer::Options options);
  // The URL to which a reference in `base`, which is a URL, leads, by RFC 3986: without the dots of
  // a path. None for what is no reference, or names an empty host.
  std::optional<std::string> (*resolve)(const std::string& base, const std::string& reference);
};

class HTTPLibraryMissing : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Stays loaded. Throws HTTPLibraryMissing. Any thread.
const HTTPLibrary& httpLibrary();

}  // namespace sim
