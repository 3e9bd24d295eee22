// Text between C++ (UTF-8) and the platform (NSString).

#pragma once

#include <array>
#include <atomic>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/FixedString.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Selector.h"

namespace zib {

// Never fails: bytes that are not UTF-8 become U+FFFD, one for each maximal ill-formed part.
Object makeString(std::string_view utf8);

// The whole text, NUL characters included; lone surrogates become U+FFFD. Empty for nil. `string`
// is an NSString or nil.
std::string utf8From(objc::id string);

// What the object answers; something else where that is no text, or where the object raises.
std::string textAnswered(objc::id object, Selector selector, std::string_view otherwise);

// A platform string that somebody else keeps alive, or none: for reading it where it lies. Not for
// keeping it beyond the call in which it was handed out.
class StringRef {
 public:
  StringRef() noexcept = default;
  // None for nil and for what is no string.
  static StringRef of(objc::id object) { return StringRef(cast<"NSString">(object)); }

  explicit operator bool() const noexcept { return raw_ != nullptr; }
  // A copy of the text; empty where there is none. Utf8 reads it without one.
  [[nodiscard]] std::string utf8() const;
  [[nodiscard]] objc::id native() const noexcept { return raw_; }
  // Whether it consists of exactly these ASCII characters, or ends with them.
  [[nodiscard]] bool equals(std::string_view ascii) const;
  [[nodiscard]] bool endsWith(std::string_view ascii) const;

 private:
  friend std::string utf8From(objc::id string);
  explicit StringRef(objc::id raw) noexcept : raw_(raw) {}

  objc::id raw_ = nullptr;
};

// The UTF-8 of a platform string for as long as one function needs it, like utf8From() but without
// an allocation where the text is short and ASCII, as links, tokens and identifiers are.
class Utf8 {
 public:
  explicit Utf8(StringRef text);
  Utf8(const Utf8&) = delete;
  Utf8& operator=(const Utf8&) = delete;

  [[nodiscard]] std::string_view view() const noexcept { return view_; }

 private:
  static constexpr std::size_t room = 512;

  std::array<char, room> characters_;
  std::string spilled_;
  std::string_view view_;
};

// The same text with each maximal part that is ill-formed as U+FFFD.
std::string wellFormed(std::string_view utf8);

// The texts one after the other.
std::string joined(std::span<const std::string_view> parts);
inline std::string joined(std::initializer_list<std::string_view> parts) {
  return joined(std::span(parts.begin(), parts.size()));
}
template <class... Part>
requires(sizeof...(Part) > 1) std::string joined(const Part&... parts) {
  return joined(std::array<std::string_view, sizeof...(Part)>{parts...});
}

// The first `count` characters (Unicode scalar values) of UTF-8. A maximal part that is ill-formed
// counts as one.
std::string_view firstCharacters(std::string_view utf8, std::size_t count) noexcept;

// A text known at compile time and the platform's object for it, which is made at its first use and
// kept: a key that is looked up on every notification must not be made, nor hashed, anew.
struct ConstantString {
  [[nodiscard]] objc::id object() const {
    const objc::id object = kept->load(std::memory_order_acquire);
    return object == nullptr ? makeNow() : object;
  }
  [[nodiscard]] objc::id makeNow() const;

  std::string_view text;
  std::atomic<objc::id>* kept = nullptr;
};

template <FixedString Text>
inline constinit std::atomic<objc::id> objectOfConstant{nullptr};

template <FixedString Text>
inline constexpr ConstantString constantString{Text.view(), &objectOfConstant<Text>};

}  // namespace zib
