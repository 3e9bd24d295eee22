// Selectors, registered once per name and process.

#pragma once

#include <atomic>

#include "ZibPlatform/ObjectiveC/FixedString.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

// A method's name as the runtime knows it. Compare with ==, which asks the runtime: on GCC's,
// selectors of one name that were registered with and without types differ by pointer.
class Selector {
 public:
  explicit Selector(const char* name) : raw_(objc::registerSelector(name)) {}
  explicit Selector(objc::SEL raw) noexcept : raw_(raw) {}

  [[nodiscard]] objc::SEL raw() const noexcept { return raw_; }
  [[nodiscard]] const char* name() const { return objc::nameOfSelector(raw_); }

  friend bool operator==(Selector one, Selector other) {
    return objc::areEqual(one.raw_, other.raw_) != 0;
  }

 private:
  objc::SEL raw_;
};

// A selector by its name, registered at its first use. An atomic rather than a function-local
// static, since registering twice is harmless and a plain load is cheaper than a guard.
struct KnownSelector {
  [[nodiscard]] Selector find() noexcept {
    const objc::SEL raw = registered.load(std::memory_order_relaxed);
    return Selector(raw == nullptr ? registerNow() : raw);
  }
  objc::SEL registerNow() noexcept;

  const char* name;
  std::atomic<objc::SEL> registered{nullptr};
};

// The selector of a name that is known at compile time: `selector<"delegate">()`.
template <FixedString Name>
Selector selector() {
  static constinit KnownSelector known{Name.data()};
  return known.find();
}

}  // namespace zib
