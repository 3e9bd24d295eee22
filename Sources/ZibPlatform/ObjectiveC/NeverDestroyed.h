// A static object without a destructor: what threads may still call while the process exits
// outlives them all.

#pragma once

namespace zib {

template <class T>
class NeverDestroyed {
 public:
  template <class Make>
  explicit NeverDestroyed(Make make) : value_(make()) {}
  ~NeverDestroyed() {}  // NOLINT(modernize-use-equals-default): it would destroy the value
  NeverDestroyed(const NeverDestroyed&) = delete;
  NeverDestroyed& operator=(const NeverDestroyed&) = delete;

  T& operator*() noexcept { return value_; }

 private:
  union {
    T value_;
  };
};

}  // namespace zib
