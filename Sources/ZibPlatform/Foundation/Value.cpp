#include "ZibPlatform/Foundation/Value.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>

namespace zib {
namespace {

// Of the members that these point to; where they lie decides between equal ones.
int compareKeys(const void* one, const void* other) {
  const Member* const first = *static_cast<const Member* const*>(one);
  const Member* const second = *static_cast<const Member* const*>(other);
  const int order = std::string_view(first->key).compare(second->key);
  if (order != 0) return order;
  return first < second ? -1 : 1;
}

}  // namespace

Value::Value(StringRef value) {
  if (value) setText(Utf8(value).view());
}

void Value::setUnsigned(std::uint64_t value) noexcept {
  if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
    storage_ = static_cast<std::int64_t>(value);
  } else {
    storage_ = value;
  }
}

const Value& Value::keep(std::string_view text, std::atomic<const Value*>& kept) {
  auto original = std::make_unique<const Value>(text);
  std::unique_ptr<const Value> made(new Value(Constant{original.get()}));
  const Value* constant = nullptr;
  // Another thread's, if it was faster.
  if (!kept.compare_exchange_strong(constant, made.get())) return *constant;
  static_cast<void>(original.release());
  return *made.release();
}

bool operator==(const Value& one, const Value& other) { return one.storage() == other.storage(); }

ValueMap::ValueMap() noexcept = default;
ValueMap::ValueMap(const ValueMap& other) = default;
ValueMap::ValueMap(ValueMap&& other) noexcept = default;
ValueMap& ValueMap::operator=(const ValueMap& other) = default;
ValueMap& ValueMap::operator=(ValueMap&& other) noexcept = default;
ValueMap::~ValueMap() = default;

ValueMap::ValueMap(std::initializer_list<Member> members) {
  members_.reserve(members.size());
  for (const Member& member : members) set(member.key, member.value);
}

void ValueMap::reserve(std::size_t count) { members_.reserve(count); }

void ValueMap::set(std::string_view key, Value value) {
  const auto found = std::find_if(members_.begin(), members_.end(),
                                  [&](const Member& member) { return member.key == key; });
  if (found == members_.end()) {
    append(key, std::move(value));
  } else {
    found->value = std::move(value);
  }
}

void ValueMap::append(std::string_view key, Value value) { append(key) = std::move(value); }

Value& ValueMap::append(std::string_view key) { return members_.emplace_back(key).value; }

const Value* ValueMap::find(std::string_view key) const noexcept {
  for (const Member& member : members_) {
    if (member.key == key) return &member.value;
  }
  return nullptr;
}

void ValueMap::dropRepeatedKeys() {
  const auto sorted = byKey(*this);
  const auto areOfOneKey = [](const Member* one, const Member* other) {
    return one->key == other->key;
  };
  if (std::adjacent_find(sorted.begin(), sorted.end(), areOfOneKey) == sorted.end()) return;
  ValueMap kept;
  for (const Member* const member : sorted) {
    if (!kept.empty() && areOfOneKey(&kept.members_.back(), member)) continue;
    Member& own = members_[static_cast<std::size_t>(member - members_.data())];
    kept.append(own.key) = std::move(own.value);
  }
  members_.swap(kept.members_);
}

std::size_t ValueMap::size() const noexcept { return members_.size(); }
bool ValueMap::empty() const noexcept { return members_.empty(); }
std::vector<Member>::const_iterator ValueMap::begin() const noexcept { return members_.begin(); }
std::vector<Member>::const_iterator ValueMap::end() const noexcept { return members_.end(); }

bool operator==(const ValueMap& one, const ValueMap& other) {
  return one.size() == other.size() &&
         std::all_of(one.begin(), one.end(), [&](const Member& member) {
           const Value* value = other.find(member.key);
           return value != nullptr && *value == member.value;
         });
}

std::vector<const Member*> byKey(const ValueMap& map) {
  std::vector<const Member*> sorted(map.size());
  if (map.empty()) return sorted;
  std::transform(map.begin(), map.end(), sorted.begin(),
                 [](const Member& member) { return &member; });
  // The C library's own sorting, which is no code of ours.
  // NOLINTNEXTLINE(bugprone-sizeof-expression): pointers are meant
  std::qsort(sorted.data(), sorted.size(), sizeof(const Member*), &compareKeys);
  return sorted;
}

}  // namespace zib
