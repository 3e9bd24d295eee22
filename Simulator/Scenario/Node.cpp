#include "Simulator/Scenario/Node.h"

#include <algorithm>
#include <cctype>
#include <cmath>

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

// How many characters have to be put in, taken out, exchanged or swapped with their neighbours;
// capitals count as the same.
std::size_t distanceBetween(std::string_view one, std::string_view other) {
  const auto same = [&](std::size_t left, std::size_t right) {
    return std::tolower(static_cast<unsigned char>(one[left])) ==
           std::tolower(static_cast<unsigned char>(other[right]));
  };
  std::vector<std::vector<std::size_t>> distance(one.size() + 1,
                                                 std::vector<std::size_t>(other.size() + 1));
  for (std::size_t row = 0; row <= one.size(); ++row) {
    for (std::size_t column = 0; column <= other.size(); ++column) {
      if (row == 0 || column == 0) {
        distance[row][column] = row + column;
        continue;
      }
      const std::size_t exchanged =
          distance[row - 1][column - 1] + (same(row - 1, column - 1) ? 0 : 1);
      std::size_t least =
          std::min({distance[row - 1][column] + 1, distance[row][column - 1] + 1, exchanged});
      const bool isSwapped =
          row > 1 && column > 1 && same(row - 1, column - 2) && same(row - 2, column - 1);
      if (isSwapped) least = std::min(least, distance[row - 2][column - 2] + 1);
      distance[row][column] = least;
    }
  }
  return distance[one.size()][other.size()];
}

std::string didYouMean(std::string_view text, const std::vector<std::string_view>& choices) {
  const auto nearest = nearestTo(text, choices);
  return nearest ? ", did you mean \"" + std::string(*nearest) + "\"?" : "";
}

}  // namespace

std::optional<std::string_view> nearestTo(std::string_view text,
                                          const std::vector<std::string_view>& choices) {
  constexpr std::size_t longest = 60;
  constexpr std::size_t charactersOfOneSlip = 3;
  if (text.empty() || text.size() > longest) return std::nullopt;
  std::optional<std::string_view> nearest;
  std::size_t least = text.size() / charactersOfOneSlip + 1;
  for (const std::string_view choice : choices) {
    const std::size_t distance = distanceBetween(text, choice);
    if (distance >= least) continue;
    least = distance;
    nearest = choice;
  }
  return nearest;
}

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

void Node::checkKeys(const std::vector<std::string_view>& allowed,
                     std::vector<ScenarioError>& errors) const {
  if (!value_->is_object()) failType("an object");
  for (const auto& [key, member] : value_->items()) {
    if (std::find(allowed.begin(), allowed.end(), key) != allowed.end()) continue;
    errors.emplace_back(pointer_ + "/" + escapedForPointer(key),
                        "unknown key" + didYouMean(key, allowed),
                        allowed.empty() ? "no keys" : quotedList(allowed));
  }
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

std::optional<bool> Node::booleanOrNull() const {
  if (isNull()) return std::nullopt;
  if (!value_->is_boolean()) failType("true, false, null");
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

bool Node::isIntegral() const {
  if (!value_->is_number_float()) return value_->is_number_integer();
  const auto number = value_->get<double>();
  return std::trunc(number) == number;
}

std::int64_t Node::integer() const {
  constexpr double limit = 9223372036854775808.0;
  const bool fits = value_->is_number_unsigned()
                        ? value_->get<std::uint64_t>() <= INT64_MAX
                        : !value_->is_number_float() ||
                              (value_->get<double>() >= -limit && value_->get<double>() < limit);
  if (!isIntegral() || !fits) failType("an integer");
  return value_->get<std::int64_t>();
}

double Node::nonNegativeNumber() const {
  const double number = value_->is_number() ? value_->get<double>() : -1;
  if (!(number >= 0 && number <= greatestNumber)) failType("a number from 0 to 1000000000");
  return number;
}

std::size_t Node::choice(const std::vector<std::string_view>& choices,
                         const std::string& alsoAllowed) const {
  const std::string text = value_->is_string() ? value_->get<std::string>() : std::string();
  const auto found =
      value_->is_string() ? std::find(choices.begin(), choices.end(), text) : choices.end();
  if (found == choices.end()) {
    fail("got " + shown(*value_) + didYouMean(text, choices),
         (alsoAllowed.empty() ? "" : alsoAllowed + ", ") + quotedList(choices));
  }
  return static_cast<std::size_t>(found - choices.begin());
}

}  // namespace sim
