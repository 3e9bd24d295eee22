// What is wrong with a scenario, and where.

#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "Simulator/Json/TextForms.h"

namespace sim {

// what() is "POINTER: PROBLEM; allowed: ALLOWED", one line.
class ScenarioError : public std::runtime_error {
 public:
  ScenarioError(const std::string& pointer, const std::string& problem, const std::string& allowed)
      : std::runtime_error(oneLine((pointer.empty() ? "(root)" : pointer) + ": " + problem +
                                   (allowed.empty() ? "" : "; allowed: " + allowed))) {}
};

// All that is wrong with a scenario; as an error, it is the first.
class ScenarioErrors : public ScenarioError {
 public:
  // `all` is not empty.
  explicit ScenarioErrors(std::vector<ScenarioError> all)
      : ScenarioError(all.front()), all_(std::move(all)) {}

  [[nodiscard]] const std::vector<ScenarioError>& all() const noexcept { return all_; }

 private:
  std::vector<ScenarioError> all_;
};

}  // namespace sim
