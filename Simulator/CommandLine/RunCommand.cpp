#include "Simulator/CommandLine/RunCommand.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <thread>

#include "Simulator/CommandLine/InputAndOutput.h"
#include "Simulator/CommandLine/ScenarioFiles.h"
#include "Simulator/CommandLine/Usage.h"
#include "Simulator/Page/PageDocument.h"
#include "Simulator/Page/TimelineView.h"
#include "Simulator/Report/JUnit.h"
#include "Simulator/Report/Outcome.h"
#include "Simulator/Scenario/Expectations.h"
#include "Simulator/Scenario/PlayInProcess.h"
#include "Simulator/Timeline/PeopleFormat.h"

namespace sim {
namespace {

std::vector<Json> fieldsOf(const std::vector<Step>& steps) {
  std::vector<Json> fields;
  fields.reserve(steps.size());
  for (const Step& step : steps) fields.push_back(step.written);
  return fields;
}

// How far a long run is, on a terminal that shows nothing else meanwhile.
class Progress {
 public:
  Progress(std::size_t count, bool isAlone)
      : count_(count), isShown_(count > 1 && isAlone && ::isatty(STDERR_FILENO) != 0) {}
  ~Progress() {
    if (isShown_) std::cerr << "\r\x1b[K" << std::flush;
  }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void ended(bool hasPassed) {
    ++ended_;
    if (!hasPassed) ++failed_;
    if (!isShown_) return;
    std::cerr << "\r" << ended_ << " of " << count_ << " played, " << failed_ << " failed"
              << std::flush;
  }

 private:
  std::size_t count_;
  std::size_t ended_ = 0;
  std::size_t failed_ = 0;
  bool isShown_;
};

// Writes each scenario's timeline in the order in which the scenarios were given, whichever order
// they are played in: the one whose turn it is as it happens, later ones when their turn comes.
class Run : public PlayListener {
 public:
  Run(const RunOptions& options, const std::vector<ScenarioFile>& scenarios, Output& output)
      : options_(options),
        out_(output.stream()),
        people_(out_, output.isStandardOutput() && wantsColour()),
        isForPeople_(options.format == "timeline"),
        // Where the timeline goes to somebody who does not see what else is said.
        isOutOfSight_(!isForPeople_ || !output.isStandardOutput()),
        progress_(scenarios.size(),
                  !output.isStandardOutput() || options.format == "html" || !isTerminal()) {
    for (const auto& [file, scenario] : scenarios) {
      outcomes_.push_back({.file = file,
                           .name = scenario.name,
                           .steps = fieldsOf(scenario.steps),
                           .expectations = scenario.expectations});
    }
    hasEnded_.resize(outcomes_.size());
    beginTurn();
  }

  void entryCame(std::size_t scenario, Json entry) override {
    Outcome& outcome = outcomes_[scenario];
    if (outcomes_.size() > 1) entry["scenario"] = outcome.name;
    outcome.timeline.push_back(std::move(entry));
    if (scenario == turn_) write(outcome.timeline.back());
  }

  void ended(std::size_t scenario, const std::optional<Death>& death, double seconds) override {
    Outcome& outcome = outcomes_[scenario];
    outcome.death = death;
    outcome.seconds = seconds;
    outcome.unmet = unmetExpectations(outcome.expectations, outcome.timeline);
    if (options_.isStrict) {
      std::ranges::move(problems(outcome.timeline), std::back_inserter(outcome.unmet));
    }
    hasEnded_[scenario] = true;
    while (turn_ < outcomes_.size() && hasEnded_[turn_]) {
      endTurn();
      ++turn_;
      beginTurn();
    }
    progress_.ended(outcome.hasPassed());
  }

  [[nodiscard]] bool goesOn() const override { return static_cast<bool>(out_); }

  [[nodiscard]] const std::vector<Outcome>& outcomes() const { return outcomes_; }

  [[nodiscard]] int status() const {
    int status = allAsExpected;
    for (const Outcome& outcome : outcomes_) {
      if (!outcome.unmet.empty()) status = std::max<int>(status, expectationNotMet);
      if (outcome.death) status = std::max<int>(status, processDied);
    }
    return status;
  }

 private:
  static bool isTerminal() { return ::isatty(STDOUT_FILENO) != 0; }

  void beginTurn() {
    if (turn_ == outcomes_.size()) return;
    const Outcome& outcome = outcomes_[turn_];
    if (isForPeople_) people_.title(outcome.name, outcome.steps);
    for (const Json& entry : outcome.timeline) write(entry);
  }

  void write(const Json& entry) {
    if (options_.format == "jsonl") out_ << lineFrom(entry) << '\n';
    if (isForPeople_) people_.entry(entry);
  }

  void endTurn() {
    Outcome& outcome = outcomes_[turn_];
    if (isForPeople_) people_.summary(outcome.unmet);
    out_.flush();
    if (isOutOfSight_) {
      for (const std::string& message : outcome.unmet) {
        std::cerr << outcome.name << ": " << message << '\n';
      }
    }
    if (outcome.death) std::cerr << "zibsim: " << describeDeath(outcome);
    // A page and a report show it later; nobody else does.
    if (options_.format != "html" && options_.junit.empty())
      std::vector<Json>().swap(outcome.timeline);
  }

  const RunOptions& options_;
  std::ostream& out_;
  PeopleFormat people_;
  bool isForPeople_;
  bool isOutOfSight_;
  std::vector<Outcome> outcomes_;
  std::vector<bool> hasEnded_;
  std::size_t turn_ = 0;
  Progress progress_;
};

std::size_t jobsFor(const RunOptions& options) {
  if (options.jobs > 0) return options.jobs;
  return std::max(1U, std::thread::hardware_concurrency());
}

std::string titleOf(const std::vector<Outcome>& outcomes) {
  return outcomes.size() == 1 ? outcomes.front().name
                              : std::to_string(outcomes.size()) + " scenarios";
}

}  // namespace

int runScenarios(const RunOptions& options) {
  const std::vector<ScenarioFile> files = readScenarioFiles(options.files);
  std::vector<std::string> names;
  names.reserve(files.size());
  for (const ScenarioFile& file : files) names.push_back(file.file);
  requireApart(options.junit, names);
  names.push_back(options.junit);
  requireApart(options.output, names);
  Output output(options.output);
  std::optional<Output> junit;
  if (!options.junit.empty()) junit.emplace(options.junit);
  std::vector<Scenario> scenarios;
  scenarios.reserve(files.size());
  for (const ScenarioFile& file : files) scenarios.push_back(file.scenario);
  Run run(options, files, output);
  playInProcesses(scenarios, jobsFor(options), run);
  if (options.format == "html") {
    output.stream() << standaloneDocument(titleOf(run.outcomes()), viewOf(run.outcomes()));
  }
  output.finish();
  if (junit) {
    junit->stream() << junitFrom(run.outcomes());
    junit->finish();
  }
  const bool isStandardOutputFree = options.format == "timeline" || !output.isStandardOutput();
  const bool isForErrors = options.format == "jsonl" || !isStandardOutputFree;
  (isForErrors ? std::cerr : std::cout) << tallyOf(run.outcomes()) << std::endl;
  return run.status();
}

}  // namespace sim
