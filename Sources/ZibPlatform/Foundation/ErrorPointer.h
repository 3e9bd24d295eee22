// Calls of platform methods that report a failure through a last argument of type NSError**.

#pragma once

#include <optional>

#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Result.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// failureOf() without the type of the call.
std::optional<Error> failureOfCall(bool (*call)(const void* of, objc::id* error), const void* of);

// `call` gets the pointer for the error and tells whether it succeeded; the pointed-to error is
// looked at only if it did not. An exception is a failure too: the platform's readers throw one at
// some bytes, and what the bytes are is the sender's choice.
template <class Call>
std::optional<Error> failureOf(const Call& call) {
  return failureOfCall(
      [](const void* of, objc::id* error) { return (*static_cast<const Call*>(of))(error); },
      &call);
}

// The same for a call whose result is an object, nil meaning failure.
Result<Object> objectOfCall(objc::id (*call)(const void* of, objc::id* error), const void* of);
template <class Call>
Result<Object> objectOrError(const Call& call) {
  return objectOfCall(
      [](const void* of, objc::id* error) { return (*static_cast<const Call*>(of))(error); },
      &call);
}

}  // namespace zib
