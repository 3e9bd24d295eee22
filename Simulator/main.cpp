// The command line of zibsim.

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "Simulator/CommandLine/DiffCommand.h"
#include "Simulator/CommandLine/InputAndOutput.h"
#include "Simulator/CommandLine/InspectCommand.h"
#include "Simulator/CommandLine/RecordCommand.h"
#include "Simulator/CommandLine/RunCommand.h"
#include "Simulator/CommandLine/ServeCommand.h"
#include "Simulator/CommandLine/Usage.h"
#include "Simulator/Scenario/Reader.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "ZibMessaging/Private/NotificationEvent.h"

namespace {

constexpr const char* version = "zibsim " ZIBSIM_VERSION;

// The commands by name, since a word that is none of them is easily a command of a later version.
std::string describeParseError(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<std::string> rest = app.remaining();
  const bool isUnknownCommand =
      app.get_subcommands().empty() && !rest.empty() && !rest.front().starts_with('-');
  if (!isUnknownCommand) return error.what() + std::string("; allowed: see zibsim --help");
  std::string allowed;
  for (const CLI::App* const command : app.get_subcommands({}))
    allowed += command->get_name() + ", ";
  return "no command \"" + rest.front() + "\"; allowed: " + allowed + "--help, --version";
}

// Options and what each command does with them.
class CommandLine {
 public:
  CommandLine()
      : app_("zibsim, the simulated device: what does the messaging module do?", "zibsim") {
    app_.set_version_flag("--version", version);
    app_.require_subcommand(1);
    app_.footer(
        "Exit status: 0 all went as expected; 1 an expectation was not met; 2 the command line or "
        "a\n"
        "file is wrong, nothing was run; 3 a scenario's process died.\n"
        "Each command has its own --help.");
    addRun();
    addInspect();
    addServe();
    addDiff();
    addRecord();
    addSchema();
  }

  int execute(int argc, char** argv) {
    try {
      app_.parse(argc, argv);
      return status_;
    } catch (const CLI::Success& success) {
      return app_.exit(success);
    } catch (const CLI::ParseError& error) {
      std::cerr << "zibsim: " << sim::oneLine(describeParseError(app_, error)) << '\n';
    } catch (const sim::UsageError& error) {
      std::istringstream lines(error.what());
      for (std::string line; std::getline(lines, line);) std::cerr << "zibsim: " << line << '\n';
    } catch (const std::runtime_error& error) {
      std::cerr << "zibsim: " << error.what() << '\n';
    }
    return sim::wrongUsage;
  }

 private:
  void addRun() {
    CLI::App* const command = app_.add_subcommand(
        "run", "Plays each scenario in a process of its own, and says what happened");
    command
        ->add_option("--format", run_.format,
                     "timeline, for people; jsonl, an entry a line; html, a page")
        ->check(CLI::IsMember({"timeline", "jsonl", "html"}));
    command->add_option("--output", run_.output, "the file to write to");
    command->add_option("--junit", run_.junit, "a file for a report that CI systems read");
    command->add_option("--jobs", run_.jobs, "how many at a time; all cores unless given")
        ->check(CLI::Range(1, 1024));
    command->add_flag("--strict", run_.isStrict, "a problem fails a scenario");
    command
        ->add_option("SCENARIO.json", run_.files,
                     "a scenario, a folder of them, or - for standard input")
        ->required();
    command->callback([this] { status_ = sim::runScenarios(run_); });
  }

  void addInspect() {
    CLI::App* const command =
        app_.add_subcommand("inspect", "Says what a push payload reports and opens");
    inspect_.eventType = zib::clickedEvent.text;
    command->add_option("--event-type", inspect_.eventType,
                        "what happened to it: notification-clicked unless given, or "
                        "notification-delivered");
    command->add_option("--format", inspect_.format, "text, json or html")
        ->check(CLI::IsMember({"text", "json", "html"}));
    command
        ->add_option("PAYLOAD", inspect_.file,
                     "a payload, such as an .apns file, or - for standard input")
        ->required();
    command->callback([this] { status_ = sim::inspectPayload(inspect_); });
  }

  void addServe() {
    CLI::App* const command = app_.add_subcommand(
        "serve", "Shows a page on this computer alone, to try payloads and scenarios on");
    command->add_option("--port", serve_.port, "8420 unless given; 0 takes any that is free")
        ->check(CLI::Range(0, 65535));
    command->callback([this] { status_ = sim::servePage(serve_); });
  }

  void addDiff() {
    CLI::App* const command = app_.add_subcommand(
        "diff", "Says what two timelines differ in: what happened, not when or what was logged");
    const char* const timeline = "a timeline that run --format jsonl has written, or -";
    command->add_option("A", diff_.first, timeline)->required();
    command->add_option("B", diff_.second, timeline)->required();
    command->callback([this] { status_ = sim::compareTimelines(diff_); });
  }

  void addRecord() {
    CLI::App* const command = app_.add_subcommand(
        "record", "Plays a scenario, and writes what the module was called with as another one");
    command->add_option("--output", record_.output, "the file to write to");
    command->add_flag("--with-texts", record_.hasTexts,
                      "tokens and texts as they are; otherwise made unrecognisable");
    command->add_option("SCENARIO.json", record_.file, "a scenario, or - for standard input")
        ->required();
    command->callback([this] { status_ = sim::recordScenario(record_); });
  }

  void addSchema() {
    app_.add_subcommand("schema", "Prints the JSON Schema of a scenario")->callback([] {
      sim::Output output({});
      output.stream() << sim::scenarioSchema().dump(2) << '\n';
      output.finish();
    });
  }

  CLI::App app_;
  sim::RunOptions run_;
  sim::InspectOptions inspect_;
  sim::ServeOptions serve_;
  sim::DiffOptions diff_;
  sim::RecordOptions record_;
  int status_ = sim::allAsExpected;
};

}  // namespace

int main(int argc, char** argv) {
  // A reader that goes away is an output that cannot be written, and no reason to leave things
  // behind.
  std::signal(SIGPIPE, SIG_IGN);
  return CommandLine().execute(argc, argv);
}
