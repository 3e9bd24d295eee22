// A field that one thread may write while others read it.

#pragma once

#include <mutex>
#include <utility>

namespace zib {

// Readers get the old value or the new one, never a mixture. The lock is held for one copy or swap
// and never while anything else runs: the old value is destroyed outside of it, since its
// destructor may be the host's code.
template <class T>
class Guarded {
 public:
  [[nodiscard]] T load() const {
    return read([](const T& value) { return value; });
  }

  // For what a copy of the value would only be a step to. `use` is of the same length as a copy.
  template <class Use>
  [[nodiscard]] auto read(Use use) const {
    const std::lock_guard lock(mutex_);
    return use(value_);
  }

  void store(T value) {
    const std::lock_guard lock(mutex_);
    std::swap(value_, value);
  }

 private:
  mutable std::mutex mutex_;
  T value_{};
};

}  // namespace zib
