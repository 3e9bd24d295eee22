#include "ZibPlatform/Foundation/ErrorPointer.h"

#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace zib {

std::optional<Error> failureOfCall(bool (*call)(const void* of, objc::id* error), const void* of) {
  const AutoreleasePool pool;
  objc::id error = nullptr;
  try {
    if (call(of, &error)) return std::nullopt;
  } catch (...) {
    return Error{"ZibMessaging", 0, "The platform threw an exception", {}};
  }
  return Error::fromNative(error);
}

}  // namespace zib
