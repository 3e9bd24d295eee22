// A property-list or JSON value in C++: what an analytics event carries, and what a notification's
// payload becomes when somebody asks for all of it.

#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Platform/Data.h"

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
  using Storage = std::variant<Null, bool, std::int64_t, std::uint64_t, double, std::string, Bytes,
                               Date, Array, ValueMap>;

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
  Value(std::string value) noexcept : storage_(std::move(value)) {}
  Value(Bytes value) noexcept : storage_(std::move(value)) {}
  Value(Date value) noexcept : storage_(value) {}
  Value(Array value) noexcept : storage_(std::move(value)) {}
  Value(ValueMap value) noexcept : storage_(std::move(value)) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] const Storage& storage() const noexcept { return storage_; }
  // The alternative, or null when the value is another.
  template <class T>
  [[nodiscard]] const T* get() const noexcept {
    return std::get_if<T>(&storage_);
  }

  friend bool operator==(const Value&, const Value&) = default;

 private:
  Storage storage_;
};

struct Member {
  std::string key;
  Value value;
  friend bool operator==(const Member&, const Member&) = default;
};

}  // namespace zib
