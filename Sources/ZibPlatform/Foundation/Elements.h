// What a collection of the platform's holds, one after another.

#pragma once

#include <iterator>

#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

// For one pass, within the current autorelease pool, while nobody changes the collection. Nil holds
// nothing.
class Elements {
 public:
  class Iterator {
   public:
    explicit Iterator(Elements& elements) : elements_(elements), element_(elements.next()) {}
    objc::id operator*() const noexcept { return element_; }
    Iterator& operator++() {
      element_ = elements_.next();
      return *this;
    }
    friend bool operator==(const Iterator& at, std::default_sentinel_t /*end*/) noexcept {
      return at.element_ == nullptr;
    }

   private:
    Elements& elements_;
    objc::id element_;
  };

  Iterator begin() { return Iterator(*this); }
  [[nodiscard]] static std::default_sentinel_t end() noexcept { return {}; }

 private:
  friend Elements elements(objc::id collection);
  friend Elements keysOf(objc::id dictionary);
  explicit Elements(objc::id enumerator) noexcept : source_(enumerator) {}
  Elements(objc::id array, objc::UInteger count) noexcept
      : source_(array), isArray_(true), count_(count) {}
  // Nil at the end.
  objc::id next();

  // An array is asked by index, which makes no enumerator.
  objc::id source_;
  bool isArray_ = false;
  objc::UInteger count_ = 0;
  objc::UInteger index_ = 0;
};

// `for (const id each : elements(collection))`. Of a dictionary, its values.
Elements elements(objc::id collection);
Elements keysOf(objc::id dictionary);

}  // namespace zib
