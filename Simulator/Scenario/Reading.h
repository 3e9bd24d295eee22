// What is known, and what has been found wrong, while a scenario is read.

#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "Simulator/Device/Device.h"
#include "Simulator/Host/HostClasses.h"
#include "Simulator/Scenario/ScenarioError.h"

namespace sim {

struct Reading {
  // Where files are looked for that the scenario names.
  std::filesystem::path folder;
  SystemVersion osVersion;
  HostClassDescriptions classes;
  // Of the scenes that are connected when the step begins that is read.
  std::size_t connectedScenes = 0;
  // Of those that connect when the application, which is late, has launched.
  std::size_t lateScenes = 0;
  bool isApplicationLate = false;
  std::vector<ScenarioError> errors;

  // What is wrong in one place does not keep the rest from being looked at.
  template <class Read>
  void collectErrorOf(Read read) {
    try {
      read();
    } catch (const ScenarioError& error) {
      errors.push_back(error);
    }
  }
};

}  // namespace sim
