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

// What selector() does once.
Selector registerInto(std::atomic<objc::SEL>& registered, const char* name);

// The selector of a name that is known at compile time: `selector<"delegate">()`. An atomic rather
// than a function-local static, since registering twice is harmless and a plain load is cheaper
// than a guard.
template <FixedString Name>
Selector selector() {
  static constinit std::atomic<objc::SEL> registered{nullptr};
  const objc::SEL raw = registered.load(std::memory_order_relaxed);
  return raw == nullptr ? registerInto(registered, Name.data()) : Selector(raw);
}

}  // namespace zib
