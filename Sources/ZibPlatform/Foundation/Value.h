// A property-list or JSON value in C++: what an analytics event carries, and what a notification's
// payload becomes when somebody asks for all of it.

#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Strings.h"

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

// A text of the module's own, which lives as long as the process and is not copied. Readers need
// not tell it from another text: see Value::get() and Value::visit().
struct ConstantText {
  const std::string* text;
  friend bool operator==(ConstantText one, ConstantText other) { return *one.text == *other.text; }
};

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
  // Adds a key that is known not to be there.
  void append(std::string_view key, Value value);
  // The same with the null marker, to be given its value in place until the map changes.
  Value& append(std::string_view key);
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
 public:
  // Integers that fit are int64_t; uint64_t holds only what is greater.
  using Storage = std::variant<Null, bool, std::int64_t, std::uint64_t, double, std::string,
                               ConstantText, Bytes, Date, Array, ValueMap>;

  Value() noexcept = default;
  // NOLINTBEGIN(google-explicit-constructor): a value is any of these.
  Value(Null) noexcept {}
  Value(bool value) noexcept : storage_(value) {}
  Value(int value) noexcept : storage_(std::int64_t{value}) {}
  Value(std::int64_t value) noexcept : storage_(value) {}
  Value(std::uint64_t value) noexcept;
  Value(double value) noexcept : storage_(value) {}
  Value(const char* value) : storage_(std::string(value)) {}
  Value(std::string_view value) : storage_(std::string(value)) {}
  Value(const ConstantString& value) : storage_(ConstantText{&value.utf8()}) {}
  Value(std::string value) noexcept : storage_(std::move(value)) {}
  Value(Bytes value) noexcept : storage_(std::move(value)) {}
  Value(Date value) noexcept : storage_(value) {}
  Value(Array value) noexcept : storage_(std::move(value)) {}
  Value(ValueMap value) noexcept : storage_(std::move(value)) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] const Storage& storage() const noexcept { return storage_; }
  // Calls the visitor with the alternative; a text comes as a std::string however it is held.
  template <class Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit(
        [&](const auto& held) -> decltype(auto) {
          if constexpr (std::is_same_v<std::decay_t<decltype(held)>, ConstantText>) {
            return visitor(*held.text);
          } else {
            return visitor(held);
          }
        },
        storage_);
  }
  // The alternative, or null when the value is another. A std::string is found however it is held.
  template <class T>
  [[nodiscard]] const T* get() const noexcept {
    if constexpr (std::is_same_v<T, std::string>) {
      if (const auto* constant = std::get_if<ConstantText>(&storage_)) return constant->text;
    }
    return std::get_if<T>(&storage_);
  }

  // Replaces the value by a copy of the text, made in place, or by the constant.
  void setText(std::string_view text) { storage_.emplace<std::string>(text); }
  void setText(const ConstantString& text) { storage_ = ConstantText{&text.utf8()}; }

  friend bool operator==(const Value& one, const Value& other);

 private:
  Storage storage_;
};

struct Member {
  Member(std::string_view name, Value content) : key(name), value(std::move(content)) {}
  explicit Member(std::string_view name) : key(name) {}

  std::string key;
  Value value;
  friend bool operator==(const Member&, const Member&) = default;
};

}  // namespace zib
