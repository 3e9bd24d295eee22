// A failure as a value: the platform's error objects and the module's own findings alike.

#pragma once

#include <cstdint>
#include <string>

#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

struct Error {
  std::string domain;
  std::int64_t code = 0;
  std::string description;
  // The platform's object, where the failure came with one; see nativeError().
  Object native;

  // For nil, or an object that is no NSError, the error says that none was given. What the
  // platform's error does not tell, or raises as it is asked for, costs the rest nothing.
  static Error fromNative(objc::id error);
  // The platform's own object, or one made from the fields.
  [[nodiscard]] Object nativeError() const;
};

}  // namespace zib
