// Nothing that goes wrong inside the module reaches the host as an exception.
//
// Do not wrap the host's own method around which an interceptor stands: its exceptions are between
// the host and the system and pass through untouched.

#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace zib {

// What the exception that is being handled says of itself. Never throws.
std::string describeHandledException() noexcept;
// Reports a stopped exception as an error line. Never throws, and is not called while one is being
// handled: C++ runtimes end the process when the platform's exception comes on top of another.
void reportContained(std::string_view operation, std::string description) noexcept;

// contained() without the type of the work, so that what stops an exception is there once.
bool containedCall(std::string_view operation, void (*call)(const void* work),
                   const void* work) noexcept;

// Runs the work and stops whatever it throws: a host's callback or a core that broke its promise
// must not cost the app a notification's completion. False when it was stopped.
template <class Work>
bool contained(std::string_view operation, const Work& work) noexcept {
  return containedCall(
      operation, [](const void* of) { (*static_cast<const Work*>(of))(); }, &work);
}

// The same for work with a result, in whose place `otherwise` comes when it was stopped.
template <class Result, class Work>
Result containedOr(Result otherwise, std::string_view operation, Work&& work) noexcept {
  contained(operation, [&] { otherwise = std::forward<Work>(work)(); });
  return otherwise;
}

}  // namespace zib
