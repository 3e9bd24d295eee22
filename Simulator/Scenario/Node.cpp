#include "Simulator/Scenario/Node.h"

#include <algorithm>
#include <cmath>

#include "Simulator/Scenario/ScenarioError.h"

namespace sim {
namespace {

// Short enough for a message of one line.
std::string shown(const Json& value) {
  if (value.is_object()) return "an object";
  if (value.is_array()) return "a list";
  constexpr std::size_t longest = 60;
  std::string text = value.dump(-1, ' ', true);
  return text.size() <= longest ? text : text.substr(0, longest) + "…";
}

}  // namespace

std::string escapedForPointer(std::string_view key) {
  std::string escaped;
  for (const char character : key) {
    if (character == '~') {
      escaped += "~0";
    } else if (character == '/') {
      escaped += "~1";
    } else {
      escaped += character;
    }
  }
  return escaped;
}

std::string quotedList(const std::vector<std::string_view>& texts) {
  std::string list;
  for (const std::string_view text : texts) {
    if (!list.empty()) list += ", ";
    list.append("\"").append(text).append("\"");
  }
  return list;
}

void Node::fail(const std::string& problem, const std::string& allowed) const {
  throw ScenarioError(pointer_, problem, allowed);
}

void Node::failType(const std::string& allowed) const { fail("got " + shown(*value_), allowed); }

const Node& Node::objectOf(const std::vector<std::string_view>& allowedKeys) const {
  if (!value_->is_object()) failType("an object");
  for (const auto& [key, member] : value_->items()) {
    if (std::find(allowedKeys.begin(), allowedKeys.end(), key) == allowedKeys.end()) {
      throw ScenarioError(pointer_ + "/" + escapedForPointer(key), "unknown key",
                          allowedKeys.empty() ? "no keys" : quotedList(allowedKeys));
    }
  }
  return *this;
}

std::optional<Node> Node::find(std::string_view key) const {
  const auto member = value_->find(std::string(key));
  if (member == value_->end()) return std::nullopt;
  return Node(*member, pointer_ + "/" + escapedForPointer(key));
}

Node Node::require(std::string_view key) const {
  auto member = find(key);
  if (!member) fail("the key \"" + std::string(key) + "\" is missing", "a value for it");
  return *member;
}

bool Node::hasObject() const {
  if (!isNull() && !value_->is_object()) failType("an object, null");
  return !isNull();
}

std::vector<Node> Node::list() const {
  if (!value_->is_array()) failType("a list");
  std::vector<Node> elements;
  for (std::size_t index = 0; index < value_->size(); ++index) {
    elements.emplace_back((*value_)[index], pointer_ + "/" + std::to_string(index));
  }
  return elements;
}

bool Node::boolean() const {
  if (!value_->is_boolean()) failType("true, false");
  return value_->get<bool>();
}

std::string Node::text() const {
  if (!value_->is_string()) failType("a text");
  return value_->get<std::string>();
}

std::optional<std::string> Node::textOrNull() const {
  if (isNull()) return std::nullopt;
  if (!value_->is_string()) failType("a text, null");
  return value_->get<std::string>();
}

std::int64_t Node::integer() const {
  const bool fits = value_->is_number_integer() &&
                    !(value_->is_number_unsigned() && value_->get<std::uint64_t>() > INT64_MAX);
  if (!fits) failType("an integer");
  return value_->get<std::int64_t>();
}

double Node::nonNegativeNumber() const {
  constexpr double longest = 1e9;  // virtual time is counted in nanoseconds of 64 bits
  const double number = value_->is_number() ? value_->get<double>() : -1;
  if (!(number >= 0 && number <= longest)) failType("a number from 0 to 1000000000");
  return number;
}

std::size_t Node::choice(const std::vector<std::string_view>& choices) const {
  const auto found = value_->is_string()
                         ? std::find(choices.begin(), choices.end(), value_->get<std::string>())
                         : choices.end();
  if (found == choices.end()) failType(quotedList(choices));
  return static_cast<std::size_t>(found - choices.begin());
}

bool Node::booleanOr(std::string_view key, bool otherwise) const {
  const auto member = find(key);
  return member ? member->boolean() : otherwise;
}

}  // namespace sim
