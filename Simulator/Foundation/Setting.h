// A fact about the device that the simulation sets and installed methods read, on any thread.

#pragma once

#include <mutex>
#include <utility>

namespace sim {

template <class T>
class Setting {
 public:
  explicit Setting(T initial) : value_(std::move(initial)) {}

  [[nodiscard]] T get() const {
    const std::lock_guard lock(mutex_);
    return value_;
  }

  void set(T value) {
    const std::lock_guard lock(mutex_);
    std::swap(value_, value);
  }

 private:
  mutable std::mutex mutex_;
  T value_;
};

}  // namespace sim
