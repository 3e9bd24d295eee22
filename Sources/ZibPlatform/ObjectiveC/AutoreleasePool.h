// The scope in which objects that the platform hands out without an owner stay alive.

#pragma once

#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

// Needed on threads that the platform did not start, and around loops that make many objects.
class AutoreleasePool {
 public:
  AutoreleasePool() : pool_(objc::pushAutoreleasePool()) {}
  ~AutoreleasePool() { objc::popAutoreleasePool(pool_); }
  AutoreleasePool(const AutoreleasePool&) = delete;
  AutoreleasePool& operator=(const AutoreleasePool&) = delete;

 private:
  void* pool_;
};

}  // namespace zib
