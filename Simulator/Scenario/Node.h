// A value of a scenario together with where it stands, so that whatever is wrong with it can be
// said with its JSON pointer. Each reader throws ScenarioError.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Json/Json.h"
#include "Simulator/Scenario/ScenarioError.h"

namespace sim {

class Node {
 public:
  Node(const Json& value, std::string pointer) : value_(&value), pointer_(std::move(pointer)) {}

  [[nodiscard]] const Json& value() const noexcept { return *value_; }
  [[nodiscard]] const std::string& pointer() const noexcept { return pointer_; }
  [[nodiscard]] bool isNull() const noexcept { return value_->is_null(); }

  [[noreturn]] void fail(const std::string& problem, const std::string& allowed = {}) const;
  // The problem is "PREFIX got VALUE", shortened.
  [[noreturn]] void failType(const std::string& allowed) const;

  // Checks that it is an object; a key that is not allowed goes to the errors.
  void checkKeys(const std::vector<std::string_view>& allowed,
                 std::vector<ScenarioError>& errors) const;
  // The member, if it is there.
  [[nodiscard]] std::optional<Node> find(std::string_view key) const;
  [[nodiscard]] Node require(std::string_view key) const;
  // Whether there is an object, where null stands for none.
  [[nodiscard]] bool hasObject() const;

  [[nodiscard]] std::vector<Node> list() const;
  [[nodiscard]] bool boolean() const;
  [[nodiscard]] std::optional<bool> booleanOrNull() const;
  [[nodiscard]] std::string text() const;
  [[nodiscard]] std::optional<std::string> textOrNull() const;
  // Of any size; 1.0 is one too, and so is 1e3.
  [[nodiscard]] bool isIntegral() const;
  [[nodiscard]] std::int64_t integer() const;
  // Virtual time is counted in nanoseconds of 64 bits.
  static constexpr double greatestNumber = 1e9;
  [[nodiscard]] double nonNegativeNumber() const;
  // The index of the text among the choices. What is allowed beside them is only said.
  [[nodiscard]] std::size_t choice(const std::vector<std::string_view>& choices,
                                   const std::string& alsoAllowed = {}) const;

 private:
  const Json* value_;
  std::string pointer_;
};

// A key as a JSON pointer has it.
std::string escapedForPointer(std::string_view key);

// The one of the choices that was probably meant, if any comes near.
std::optional<std::string_view> nearestTo(std::string_view text,
                                          const std::vector<std::string_view>& choices);

// "a", "b", "c".
std::string quotedList(const std::vector<std::string_view>& texts);

}  // namespace sim
