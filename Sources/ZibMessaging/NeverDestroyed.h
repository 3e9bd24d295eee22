// A static object without a destructor: the module's singletons outlive every thread that may still
// call them while the process exits.

#pragma once

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
