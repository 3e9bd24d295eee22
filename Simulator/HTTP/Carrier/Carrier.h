// The HTTP of libraries that are well kept. This folder is a library of its own, which is loaded
// when somebody exchanges something (Library.h).

#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Simulator/HTTP/Server.h"
#include "Simulator/HTTP/Transfer.h"

namespace sim::carrier {

std::unique_ptr<Transfer> makeTransfer();
std::unique_ptr<HTTPServer> makeServer(HTTPServer::Options options);
std::optional<std::string> resolve(const std::string& base, const std::string& reference);

}  // namespace sim::carrier
