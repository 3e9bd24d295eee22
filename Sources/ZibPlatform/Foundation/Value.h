// A property-list or JSON value in C++: what an analytics event carries, and what a notification's
// payload becomes when somebody asks for all of it.

#pragma once

#include <atomic>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/FixedString.h"

namespace zib {

class Value;
struct Member;

// The null marker (NSNull, JSON null). A value of its own, not the same as an absent key.
struct Null {
  friend bool operator==(Null, Null) = default;
};

// A moment, in seconds since 1970-01-01T00:00:00Z.
struct Date {
  double secondsSince1970 = 0;
  friend bool operator==(Date, Date) = default;
};

// The integer types of both platforms, whichever C++ types they are there. A character is none.
template <class T>
concept Integer = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                  !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                  !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

using Array = std::vector<Value>;

// Distinct text keys and their values. Keeps the order of insertion for readers, but equality does
// not look at it. Meant for the few entries of an event: a look-up is linear.
class ValueMap {
 public:
  // Where a member is a complete type: Value's inline constructors already need all of these.
  ValueMap() noexcept;
  ValueMap(const ValueMap& other);
  ValueMap(ValueMap&& other) noexcept;
  ValueMap& operator=(const ValueMap& other);
  ValueMap& operator=(ValueMap&& other) noexcept;
  ~ValueMap();
  ValueMap(std::initializer_list<Member> members);

  void reserve(std::size_t count);
  // Replaces the value of a key that is there.
  void set(std::string_view key, Value value);
  // Adds a key that is known not to be there, or of which dropRepeatedKeys() or byKey() makes sure
  // later.
  void append(std::string_view key, Value value);
  // The same with the null marker, to be given its value in place until the map changes.
  Value& append(std::string_view key);
  // Of the members of one key the first stays. They are in the order of their keys then.
  void dropRepeatedKeys();
  // Null when there is no such key. Valid until the map changes.
  [[nodiscard]] const Value* find(std::string_view key) const noexcept;
  [[nodiscard]] std::size_t size() const noexcept;
  [[nodiscard]] bool empty() const noexcept;
  [[nodiscard]] std::vector<Member>::const_iterator begin() const noexcept;
  [[nodiscard]] std::vector<Member>::const_iterator end() const noexcept;

  friend bool operator==(const ValueMap& one, const ValueMap& other);

 private:
  std::vector<Member> members_;
};

class Value {
  // What stands for a text that is kept for the process: constant(). Nobody meets it outside.
  struct Constant {
    const Value* text;
    // NOLINTNEXTLINE(google-explicit-constructor): visitors of storage() need no case for it.
    operator const std::string&() const noexcept;
    friend bool operator==(Constant, Constant) = default;
  };

 public:
  // Integers that fit are int64_t; uint64_t holds only what is greater. A text is a std::string.
  using Storage = std::variant<Null, bool, std::int64_t, std::uint64_t, double, std::string, Bytes,
                               Date, Array, ValueMap, Constant>;

  Value() noexcept = default;
  Value(const Value&) = default;
  Value(Value&&) noexcept = default;
  // Anew in its place: a variant's assignment has code for each two alternatives.
  Value& operator=(Value other) noexcept {
    std::destroy_at(this);
    std::construct_at(this, std::move(other));
    return *this;
  }
  ~Value() = default;
  // Exactly these. Above all no pointer, nor anything else, becomes a boolean on its way.
  // NOLINTBEGIN(google-explicit-constructor): a value is any of these.
  Value(Null) noexcept {}
  template <std::same_as<bool> T>
  Value(T value) noexcept : storage_(value) {}
  template <Integer T>
  Value(T value) noexcept {
    if constexpr (std::unsigned_integral<T> && sizeof(T) == sizeof(std::uint64_t)) {
      setUnsigned(value);
    } else {
      storage_ = std::int64_t{value};
    }
  }
  template <class T>
  requires(std::same_as<T, double> || std::same_as<T, float>) Value(T value)
  noexcept : storage_(double{value}) {}
  Value(const char* value) : storage_(std::string(value)) {}
  Value(std::string_view value) : storage_(std::string(value)) {}
  Value(std::string value) noexcept : storage_(std::move(value)) {}
  // The null marker where there is no string.
  Value(StringRef value);
  Value(Bytes value) noexcept : storage_(std::move(value)) {}
  Value(Date value) noexcept : storage_(value) {}
  Value(Array value) noexcept : storage_(std::move(value)) {}
  Value(ValueMap value) noexcept : storage_(std::move(value)) {}
  Value(std::nullptr_t) = delete;
  // NOLINTEND(google-explicit-constructor)

  // The text of an NSString; the null marker for nil and for what is no string.
  static Value text(objc::id string) { return StringRef::of(string); }
  // A text of the caller's own code, made at its first use and kept for the process: copies of the
  // value share it.
  template <FixedString Text>
  static const Value& constant() {
    static constinit std::atomic<const Value*> kept{nullptr};
    const Value* const constant = kept.load(std::memory_order_acquire);
    return constant == nullptr ? keep(Text.view(), kept) : *constant;
  }

  [[nodiscard]] const Storage& storage() const noexcept {
    const auto* constant = std::get_if<Constant>(&storage_);
    return constant == nullptr ? storage_ : constant->text->storage_;
  }
  // Calls the visitor with the alternative.
  template <class Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit(
        [&](const auto& held) -> decltype(auto) {
          if constexpr (std::same_as<std::decay_t<decltype(held)>, Constant>) {
            return visitor(static_cast<const std::string&>(held));
          } else {
            return visitor(held);
          }
        },
        storage_);
  }
  // The alternative, or null when the value is another.
  template <class T>
  [[nodiscard]] const T* get() const noexcept {
    return std::get_if<T>(&storage());
  }
  // The same, to be moved from. Not of a text, which can be another's.
  template <class T>
  requires(!std::same_as<T, std::string>) [[nodiscard]] T* get() noexcept {
    return std::get_if<T>(&storage_);
  }

  // Replaces the value by one of that type, made in place of the arguments.
  template <class T, class... Arguments>
  T& emplace(Arguments&&... arguments) {
    return storage_.emplace<T>(std::forward<Arguments>(arguments)...);
  }
  // Replaces the value by a copy of the text, made in place.
  void setText(std::string_view text) { storage_.emplace<std::string>(text); }

  // Replaces the value by one of constant()'s, whose text it shares.
  void setConstant(const Value& constant) {
    storage_.emplace<Constant>(*std::get_if<Constant>(&constant.storage_));
  }

  friend bool operator==(const Value& one, const Value& other);

 private:
  explicit Value(Constant constant) noexcept : storage_(constant) {}
  void setUnsigned(std::uint64_t value) noexcept;
  static const Value& keep(std::string_view text, std::atomic<const Value*>& kept);

  Storage storage_;
};

inline Value::Constant::operator const std::string&() const noexcept {
  return *std::get_if<std::string>(&text->storage_);
}

struct Member {
  Member(std::string_view name, Value content) : key(name), value(std::move(content)) {}
  explicit Member(std::string_view name) : key(name) {}

  std::string key;
  Value value;
  friend bool operator==(const Member&, const Member&) = default;
};

// The members by their keys, and those of one key as they were appended.
std::vector<const Member*> byKey(const ValueMap& map);

}  // namespace zib
