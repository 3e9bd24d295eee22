// Ownership of platform objects.
//
// Do not use it for blocks (Block.h): on GNUstep a block is not an object and must never get a
// message. Raw `objc::id` is for borrowed arguments only.

#pragma once

#include <utility>

#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

// A strong reference to a platform object, or nil. Copies retain. Safe to hand between threads as
// the platform's reference counts are.
class Object {
 public:
  constexpr Object() noexcept = default;
  // Shares an object that somebody else owns.
  static Object retained(objc::id object) { return Object(objc::retain(object)); }
  // Takes over a reference that the caller owns, as `alloc`, `new` and `copy` give.
  static Object adopted(objc::id object) noexcept { return Object(object); }

  Object(const Object& other) : raw_(objc::retain(other.raw_)) {}
  Object(Object&& other) noexcept : raw_(std::exchange(other.raw_, nullptr)) {}
  Object& operator=(Object other) noexcept {
    std::swap(raw_, other.raw_);
    return *this;
  }
  ~Object() { objc::release(raw_); }

  [[nodiscard]] objc::id raw() const noexcept { return raw_; }
  // The reference itself, which is the caller's now.
  [[nodiscard]] objc::id relinquish() noexcept { return std::exchange(raw_, nullptr); }
  explicit operator bool() const noexcept { return raw_ != nullptr; }

 private:
  explicit Object(objc::id raw) noexcept : raw_(raw) {}

  objc::id raw_ = nullptr;
};

// What stands for one of the platform's objects, such as a dictionary or the application. Copies
// share the object.
class Handle {
 public:
  // For as long as somebody retains it, as the handle does.
  [[nodiscard]] objc::id native() const noexcept { return native_.raw(); }

 protected:
  Handle() noexcept = default;
  explicit Handle(Object native) noexcept : native_(std::move(native)) {}

 private:
  Object native_;
};

// A handle, such as Notification, on an object that somebody keeps alive for the length of a call:
// without the retain and release that a handle of one's own costs. Copies of the handle retain.
template <class T>
class Borrowed {
 public:
  explicit Borrowed(objc::id object) : handle_(Object::adopted(object)) {}
  ~Borrowed() {}  // NOLINT(modernize-use-equals-default): it would release the object
  Borrowed(const Borrowed&) = delete;
  Borrowed& operator=(const Borrowed&) = delete;

  const T& operator*() const noexcept { return handle_; }
  const T* operator->() const noexcept { return &handle_; }

 private:
  union {
    T handle_;
  };
};

}  // namespace zib
