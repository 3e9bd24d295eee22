// Nothing that goes wrong inside the module reaches the host as an exception.
//
// Do not wrap the host's own method around which an interceptor stands: its exceptions are between
// the host and the system and pass through untouched.

#pragma once

#include <utility>

#include "ZibPlatform/Foundation/Exception.h"

namespace zib {

// An error line.
void reportStopped(const char* operation, const CaughtException& stopped) noexcept;

// contained() with the handler in the caller's own code: what goes well costs nothing then, and
// each use is larger. For what every callback passes.
template <class Work>
bool containedInPlace(const char* operation, const Work& work) noexcept {
  const Caught stopped = caughtFrom(work);
  if (stopped == nullptr) return true;
  reportStopped(operation, *stopped);
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
