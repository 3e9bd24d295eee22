// What `zibsim run --format jsonl` prints, by a program that has nothing of the module in it: its
// other commands look into the module, this one lets whatever stands behind zib.h play.

#include <algorithm>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "Simulator/CommandLine/ScenarioFiles.h"
#include "Simulator/CommandLine/Usage.h"
#include "Simulator/Scenario/Expectations.h"
#include "Simulator/Scenario/PlayInProcess.h"

namespace {

// Prints each scenario's entries in the order in which the scenarios were given.
class Printer : public sim::PlayListener {
 public:
  explicit Printer(const std::vector<sim::Scenario>& scenarios)
      : scenarios_(scenarios), timelines_(scenarios.size()), hasEnded_(scenarios.size()) {}

  void entryCame(std::size_t scenario, sim::Json entry) override {
    if (scenarios_.size() > 1) entry["scenario"] = scenarios_[scenario].name;
    timelines_[scenario].push_back(std::move(entry));
  }

  void ended(std::size_t scenario, const std::optional<sim::Death>& death, double) override {
    const sim::Scenario& ended = scenarios_[scenario];
    if (death) fail(sim::processDied, ended.name + ": " + *death);
    for (const std::string& unmet :
         sim::unmetExpectations(ended.expectations, timelines_[scenario]))
      fail(sim::expectationNotMet, ended.name + ": " + unmet);
    hasEnded_[scenario] = true;
    for (; next_ < hasEnded_.size() && hasEnded_[next_]; ++next_) print(timelines_[next_]);
  }

  [[nodiscard]] int status() const { return status_; }

 private:
  void fail(int status, const std::string& message) {
    status_ = std::max(status_, status);
    std::cerr << message << '\n';
  }

  static void print(std::vector<sim::Json>& timeline) {
    for (const sim::Json& entry : timeline) std::cout << sim::lineFrom(entry) << '\n';
    std::cout.flush();
    std::vector<sim::Json>().swap(timeline);
  }

  const std::vector<sim::Scenario>& scenarios_;
  std::vector<std::vector<sim::Json>> timelines_;
  std::vector<bool> hasEnded_;
  std::size_t next_ = 0;
  int status_ = sim::allAsExpected;
};

}  // namespace

int main(int argc, char** argv) try {
  std::vector<sim::Scenario> scenarios;
  for (sim::ScenarioFile& file : sim::readScenarioFiles({argv + 1, argv + argc}))
    scenarios.push_back(std::move(file.scenario));
  Printer printer(scenarios);
  sim::playInProcesses(scenarios, std::max(1U, std::thread::hardware_concurrency()), printer);
  return printer.status();
} catch (const sim::UsageError& error) {
  std::cerr << error.what() << '\n';
  return sim::wrongUsage;
}
