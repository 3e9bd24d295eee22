// A static object without a destructor: what threads may still call while the process exits
// outlives them all.

#pragma once

#include <cstddef>
#include <new>

namespace zib {

// Of bytes, since an empty destructor of one's own would be called at exit.
template <class T>
class NeverDestroyed {
 public:
  template <class Make>
  explicit NeverDestroyed(Make make) {
    ::new (static_cast<void*>(bytes_)) T(make());
  }
  NeverDestroyed(const NeverDestroyed&) = delete;
  NeverDestroyed& operator=(const NeverDestroyed&) = delete;

  T& operator*() noexcept { return *std::launder(reinterpret_cast<T*>(bytes_)); }

 private:
  alignas(T) std::byte bytes_[sizeof(T)];
};

}  // namespace zib
