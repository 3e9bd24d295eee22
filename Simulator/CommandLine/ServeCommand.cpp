#include "Simulator/CommandLine/ServeCommand.h"

#include <iostream>
#include <optional>

#include "Simulator/CommandLine/Usage.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/HTTP/Library.h"
#include "Simulator/Inspect/Inspection.h"
#include "Simulator/Page/Server.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace sim {
namespace {

// What is made at its first use is made before there are threads.
void warmUp() {
  foundation::install();
  const zib::AutoreleasePool pool;
  static_cast<void>(inspect(R"({"url": "https://www.example/"})", ""));
}

}  // namespace

int servePage(const ServeOptions& options) {
  warmUp();
  std::optional<PageServer> server;
  try {
    server.emplace(options.port, "/proc/self/exe");
  } catch (const HTTPLibraryMissing&) {
    throw;
  } catch (const std::runtime_error& error) {
    throw UsageError(std::string("--port: ") + error.what() +
                     "; allowed: a port that is free, 0 for any");
  }
  std::cout << "http://127.0.0.1:" << server->port() << "/ shows the page; Ctrl+C ends it"
            << std::endl;
  server->serve();
  return allAsExpected;
}

}  // namespace sim
