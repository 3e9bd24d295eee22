#include "Simulator/CommandLine/ScenarioFiles.h"

#include <algorithm>
#include <filesystem>

#include "Simulator/CommandLine/InputAndOutput.h"
#include "Simulator/CommandLine/Usage.h"
#include "Simulator/Scenario/Reader.h"
#include "Simulator/Scenario/ScenarioError.h"

namespace sim {
namespace {

namespace fs = std::filesystem;

constexpr const char* allowedFiles = "a scenario file, a folder of them, or - for standard input";

// What begins with a dot is not shown to people either: editors and archives leave such files.
bool isScenarioName(const fs::path& path) {
  return path.extension() == ".json" && !path.filename().string().starts_with('.');
}

std::vector<std::string> filesIn(const std::string& folder) {
  std::vector<std::string> files;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!isScenarioName(entry.path()) || entry.is_directory()) continue;
    // Passed over, it would be a test that nobody misses.
    if (!entry.is_regular_file()) {
      throw UsageError(entry.path().string() +
                       ": (root): is no regular file; allowed: " + allowedFiles);
    }
    files.push_back(entry.path().string());
  }
  if (files.empty()) {
    throw UsageError(folder + ": (root): there is no .json file in it; allowed: " + allowedFiles);
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> filesOf(const std::vector<std::string>& names) {
  if (std::count(names.begin(), names.end(), standardInput) > 1) {
    throw UsageError("-: (root): standard input is named twice; allowed: once");
  }
  std::vector<std::string> files;
  for (const std::string& name : names) {
    if (name == standardInput || !fs::is_directory(name)) {
      files.push_back(name);
    } else {
      std::ranges::move(filesIn(name), std::back_inserter(files));
    }
  }
  return files;
}

Scenario readFile(const std::string& file) {
  const std::string text = readInput(file, allowedFiles);
  try {
    if (file == standardInput) return readScenario(text, "standard input");
    const fs::path path(file);
    return readScenario(text, path.stem().string(), path.parent_path());
  } catch (const ScenarioErrors& errors) {
    std::string lines;
    for (const ScenarioError& error : errors.all()) {
      lines.append(lines.empty() ? "" : "\n").append(file).append(": ").append(error.what());
    }
    throw UsageError(lines);
  } catch (const ScenarioError& error) {
    throw UsageError(file + ": " + error.what());
  }
}

}  // namespace

std::vector<ScenarioFile> readScenarioFiles(const std::vector<std::string>& names) {
  std::vector<ScenarioFile> scenarios;
  std::string wrong;
  for (const std::string& file : filesOf(names)) {
    try {
      scenarios.push_back({file, readFile(file)});
    } catch (const UsageError& error) {
      wrong.append(wrong.empty() ? "" : "\n").append(error.what());
    }
  }
  if (!wrong.empty()) throw UsageError(wrong);
  return scenarios;
}

}  // namespace sim
