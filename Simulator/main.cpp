// The command line of zibsim.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "Simulator/Scenario/Expectations.h"
#include "Simulator/Scenario/PlayInProcess.h"
#include "Simulator/Scenario/Reader.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "Simulator/Timeline/PeopleFormat.h"

namespace {

enum ExitStatus { allAsExpected = 0, expectationNotMet = 1, wrongUsage = 2, processDied = 3 };

constexpr const char* version = "zibsim " ZIBSIM_VERSION;
constexpr const char* standardInput = "-";

struct RunOptions {
  std::string format = "timeline";
  std::string output;
  std::vector<std::string> files;
};

// Something about the command line or a file that is to be mended by the caller.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

std::string readAll(const std::string& file) {
  const auto fail = [&](int code) {
    throw UsageError(file + ": (root): cannot be read: " + std::strerror(code) +
                     "; allowed: a scenario file, or - for standard input");
  };
  if (file == standardInput) return {std::istreambuf_iterator<char>(std::cin), {}};
  if (std::filesystem::is_directory(file)) fail(EISDIR);
  std::ifstream stream(file, std::ios::binary);
  if (!stream) fail(errno);
  return {std::istreambuf_iterator<char>(stream), {}};
}

sim::Scenario readFile(const std::string& file) {
  const std::string text = readAll(file);
  try {
    if (file == standardInput) return sim::readScenario(text, "standard input");
    const std::filesystem::path path(file);
    return sim::readScenario(text, path.stem().string(), path.parent_path());
  } catch (const sim::ScenarioError& error) {
    throw UsageError(file + ": " + error.what());
  }
}

bool wantsColour(bool isStandardOutput) {
  const char* const noColour = std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe)
  const bool isUnwanted = noColour != nullptr && *noColour != '\0';
  return isStandardOutput && ::isatty(STDOUT_FILENO) != 0 && !isUnwanted;
}

// The commands by name, since a word that is none of them is easily a command of a later version.
std::string describeParseError(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<std::string> rest = app.remaining();
  const bool isUnknownCommand =
      app.get_subcommands().empty() && !rest.empty() && !rest.front().starts_with('-');
  if (isUnknownCommand)
    return "no command \"" + rest.front() + "\"; allowed: run, --help, --version";
  return error.what() + std::string("; allowed: see zibsim --help");
}

std::vector<sim::Json> fieldsOf(const std::vector<sim::Step>& steps) {
  std::vector<sim::Json> fields;
  fields.reserve(steps.size());
  for (const sim::Step& step : steps) fields.push_back(step.written);
  return fields;
}

// Plays scenarios one after another and writes what happened in the format that was asked for.
class Runner {
 public:
  Runner(std::ostream& out, const RunOptions& options)
      : out_(out),
        people_(out, wantsColour(options.output.empty())),
        isJsonLines_(options.format == "jsonl"),
        isSummaryOutOfSight_(isJsonLines_ || !options.output.empty()),
        namesScenarios_(options.files.size() > 1) {}

  int run(const sim::Scenario& scenario) {
    std::vector<sim::Json> timeline;
    if (!isJsonLines_) people_.title(scenario.name, fieldsOf(scenario.steps));
    const auto death = sim::playInProcess(scenario, [&](const sim::Json& entry) {
      timeline.push_back(entry);
      if (namesScenarios_) timeline.back()["scenario"] = scenario.name;
      write(timeline.back());
    });
    const auto unmet = sim::unmetExpectations(scenario.expectations, timeline);
    report(scenario, unmet, death);
    if (death) return processDied;
    return unmet.empty() ? allAsExpected : expectationNotMet;
  }

 private:
  void write(const sim::Json& entry) {
    if (isJsonLines_) {
      out_ << sim::lineFrom(entry) << '\n';
    } else {
      people_.entry(entry);
    }
  }

  void report(const sim::Scenario& scenario, const std::vector<std::string>& unmet,
              const std::optional<sim::Death>& death) {
    if (!isJsonLines_) people_.summary(unmet);
    out_.flush();
    if (isSummaryOutOfSight_) {
      for (const std::string& message : unmet) {
        std::cerr << scenario.name << ": " << message << '\n';
      }
    }
    if (death) {
      std::cerr << "zibsim: the process of \"" << scenario.name << "\" died: " << *death << '\n';
    }
  }

  std::ostream& out_;
  sim::PeopleFormat people_;
  bool isJsonLines_;
  bool isSummaryOutOfSight_;
  bool namesScenarios_;
};

int run(const RunOptions& options) {
  std::vector<sim::Scenario> scenarios;
  if (std::count(options.files.begin(), options.files.end(), standardInput) > 1) {
    throw UsageError("-: (root): standard input is named twice; allowed: once");
  }
  for (const std::string& file : options.files) scenarios.push_back(readFile(file));
  std::ofstream file;
  if (!options.output.empty()) {
    file.open(options.output, std::ios::binary);
    if (!file) {
      throw UsageError(options.output + ": cannot be written: " + std::strerror(errno) +
                       "; allowed: a file in a folder that exists");
    }
  }
  std::ostream& out = options.output.empty() ? std::cout : file;
  Runner runner(out, options);
  int status = allAsExpected;
  for (const sim::Scenario& scenario : scenarios) {
    if (out) status = std::max(status, runner.run(scenario));
  }
  out.flush();
  if (!out) throw UsageError("the output cannot be written; allowed: a place with room for it");
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that goes away is an output that cannot be written, and no reason to leave things
  // behind.
  std::signal(SIGPIPE, SIG_IGN);
  CLI::App app("zibsim, the simulated device: plays scenarios against the messaging module");
  app.set_version_flag("--version", version);
  app.require_subcommand(1);
  RunOptions options;
  CLI::App* const runCommand =
      app.add_subcommand("run", "Plays each scenario in a process of its own");
  runCommand->add_option("--format", options.format, "timeline, for people, or jsonl")
      ->check(CLI::IsMember({"timeline", "jsonl"}));
  runCommand->add_option("--output", options.output, "the file to write to");
  runCommand->add_option("SCENARIO.json", options.files, "a scenario, or - for standard input")
      ->required();
  try {
    app.parse(argc, argv);
    return run(options);
  } catch (const CLI::Success& success) {
    return app.exit(success);
  } catch (const CLI::ParseError& error) {
    std::cerr << "zibsim: " << sim::oneLine(describeParseError(app, error)) << '\n';
    return wrongUsage;
  } catch (const UsageError& error) {
    std::cerr << "zibsim: " << error.what() << '\n';
    return wrongUsage;
  }
}
