// Nothing that goes wrong inside the module reaches the host as an exception.
//
// Do not wrap the host's own method around which an interceptor stands: its exceptions are between
// the host and the system and pass through untouched.

#pragma once

#include <string_view>
#include <utility>

// Reports the exception that is being handled as an error line. Never throws.
void reportContained(std::string_view operation) noexcept;

// Runs the work and stops whatever it throws: a host's callback or a core that broke its promise
// must not cost the app a notification's completion.
template <class Work>
void contained(std::string_view operation, Work&& work) noexcept {
  try {
    std::forward<Work>(work)();
  } catch (...) {
    reportContained(operation);
  }
}
