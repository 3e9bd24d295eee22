// Nothing that goes wrong inside the module reaches the host as an exception.
//
// Do not wrap the host's own method around which an interceptor stands: its exceptions are between
// the host and the system and pass through untouched.

#pragma once

#include <memory>
#include <string>
#include <utility>

namespace zib {

// Of an exception that was stopped, what it says of itself.
using Stopped = std::unique_ptr<std::string>;
// While a catch block of the caller's is handling it.
Stopped describeHandledException() noexcept;
// An error line; once the exception is no longer being handled, since C++ runtimes end the process
// when the platform's comes on top of another.
void reportStopped(const char* operation, Stopped stopped) noexcept;

// contained() with the handler in the caller's own code: what goes well costs nothing then, and
// each use is larger. For what every callback passes.
template <class Work>
bool containedInPlace(const char* operation, const Work& work) noexcept {
  Stopped stopped;
  try {
    work();
    return true;
  } catch (...) {
    stopped = describeHandledException();
  }
  reportStopped(operation, std::move(stopped));
  return false;
}

// contained() without the type of the work, so that what stops an exception is there once.
bool containedCall(const char* operation, void (*call)(const void* work),
                   const void* work) noexcept;

// Runs the work and stops whatever it throws: a host's callback or a core that broke its promise
// must not cost the app a notification's completion. False when it was stopped.
template <class Work>
bool contained(const char* operation, const Work& work) noexcept {
  return containedCall(
      operation, [](const void* of) { (*static_cast<const Work*>(of))(); }, &work);
}

// The same for work with a result, in whose place `otherwise` comes when it was stopped.
template <class Result, class Work>
Result containedOr(Result otherwise, const char* operation, Work&& work) noexcept {
  contained(operation, [&] { otherwise = std::forward<Work>(work)(); });
  return otherwise;
}

}  // namespace zib
