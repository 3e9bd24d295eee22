#include "ZibPlatform/Foundation/ErrorPointer.h"

#include <utility>

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

Result<Object> objectOfCall(objc::id (*call)(const void* of, objc::id* error), const void* of) {
  Object object;
  auto failure = failureOf([&](objc::id* error) {
    object = Object::retained(call(of, error));
    return static_cast<bool>(object);
  });
  if (failure) return *std::move(failure);
  return object;
}

}  // namespace zib
