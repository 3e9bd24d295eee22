// What is wrong with a scenario, and where.

#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace sim {

// The text with its line breaks and other control characters escaped.
std::string oneLine(std::string_view text);

// what() is "POINTER: PROBLEM; allowed: ALLOWED", one line.
class ScenarioError : public std::runtime_error {
 public:
  ScenarioError(const std::string& pointer, const std::string& problem, const std::string& allowed)
      : std::runtime_error(oneLine((pointer.empty() ? "(root)" : pointer) + ": " + problem +
                                   (allowed.empty() ? "" : "; allowed: " + allowed))) {}
};

}  // namespace sim
