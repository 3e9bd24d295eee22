// zibsim as it is called: arguments, input and output, exit statuses.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <thread>

namespace {

using Json = nlohmann::json;

enum ExitStatus { allAsExpected = 0, expectationNotMet = 1, wrongUsage = 2, processDied = 3 };

std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<Json> entriesIn(const std::string& jsonLines) {
  std::vector<Json> entries;
  std::istringstream stream(jsonLines);
  for (std::string line; std::getline(stream, line);) entries.push_back(Json::parse(line));
  return entries;
}

class CommandLineTest : public testing::Test {
 protected:
  struct Outcome {
    int status = 0;
    std::string output;
    std::string errors;
  };

  CommandLineTest() {
    std::string name = std::filesystem::temp_directory_path() / "zibsim-XXXXXX";
    folder_ = ::mkdtemp(name.data());
  }
  ~CommandLineTest() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] std::string path(const std::string& name) const { return folder_ / name; }

  [[nodiscard]] std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }

  [[nodiscard]] pid_t start(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), ZIBSIM_PATH);
    std::vector<char*> words;
    words.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    posix_spawn_file_actions_t files{};
    posix_spawn_file_actions_init(&files);
    constexpr int written = O_WRONLY | O_CREAT | O_TRUNC;
    const std::string input = path("in");
    const std::string output = path("out");
    const std::string errors = path("err");
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, input.c_str(), O_RDONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), written, 0600);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output.c_str(),
                                     std::filesystem::is_fifo(output) ? O_WRONLY : written, 0600);
    pid_t process = -1;
    EXPECT_EQ(::posix_spawn(&process, ZIBSIM_PATH, &files, nullptr, words.data(), ::environ), 0);
    posix_spawn_file_actions_destroy(&files);
    return process;
  }

  static int statusOf(pid_t process) {
    int status = 0;
    EXPECT_EQ(::waitpid(process, &status, 0), process);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  [[nodiscard]] Outcome zibsim(const std::vector<std::string>& arguments,
                               const std::string& input = {}) const {
    static_cast<void>(write("in", input));
    const int status = statusOf(start(arguments));
    return {status, contentsOf(path("out")), contentsOf(path("err"))};
  }

 private:
  std::filesystem::path folder_;
};

constexpr const char* twoSteps =
    R"({"name": "two", "steps": [{"do": "state"}, {"do": "advance", "seconds": 1.5}]})";
constexpr const char* unmet =
    R"({"name": "unmet", "steps": [{"do": "state"}], "expect": [{"kind": "event"},
        {"kind": "state", "fcmToken": "abc"}]})";

TEST_F(CommandLineTest, WritesOverNothingThatItReadsOrWrites) {
  const std::string file = write("two.json", twoSteps);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"run", "--output", file, file},
        {"run", "--junit", file, file},
        {"run", "--output", path("same"), "--junit", path("./same"), file},
        {"record", "--output", file, file}}) {
    const Outcome outcome = zibsim(arguments);
    EXPECT_EQ(outcome.status, wrongUsage);
    EXPECT_NE(outcome.errors.find("would be written over"), std::string::npos) << outcome.errors;
  }
  EXPECT_EQ(contentsOf(file), twoSteps);
  EXPECT_EQ(zibsim({"run", "--output", "/dev/null", "--junit", "/dev/null", file}).status,
            allAsExpected);
}

TEST_F(CommandLineTest, SaysWhereItCannotMakeItsFolders) {
  const std::string file = write("two.json", twoSteps);
  const std::string none = path("none");
  ::setenv("TMPDIR", none.c_str(), 1);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"run", file}, {"record", file}}) {
    const Outcome outcome = zibsim(arguments);
    EXPECT_EQ(outcome.status, wrongUsage);
    EXPECT_TRUE(outcome.errors.starts_with("zibsim: TMPDIR: \"" + none +
                                           "\": no folder can be made in it: ") &&
                outcome.errors.ends_with("; allowed: a folder for temporary files\n"))
        << outcome.errors;
  }
}

TEST_F(CommandLineTest, PassesOverNoScenarioOfAFolder) {
  std::filesystem::create_directories(path("folder/more.json"));
  static_cast<void>(write("folder/two.json", twoSteps));
  static_cast<void>(write("folder/._two.json", "no scenario"));
  EXPECT_EQ(zibsim({"run", path("folder")}).status, allAsExpected);
  std::filesystem::create_symlink("gone", path("folder/dangling.json"));
  const Outcome outcome = zibsim({"run", path("folder")});
  EXPECT_EQ(outcome.status, wrongUsage);
  EXPECT_NE(outcome.errors.find("dangling.json: (root): is no regular file"), std::string::npos)
      << outcome.errors;
}

TEST_F(CommandLineTest, ReadsNoPayloadWithoutAnEnd) {
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  std::ofstream(path("large")).close();
  std::filesystem::resize_file(path("large"), (std::uintmax_t{64} << 20U) + 1);
  static_cast<void>(write("payload", "{}"));
  for (const auto& [file, problem] : std::vector<std::pair<std::string, std::string>>{
           {"/dev/zero", "is no regular file"},
           {"pipe", "is no regular file"},
           {"large", "holds more than 64 MB"},
           {"payload\\u0000x", "a NUL is in the name"}}) {
    const std::string scenario = write(
        "scenario.json", R"({"steps": [{"do": "present", "userInfoFile": ")" + file + "\"}]}");
    const Outcome outcome = zibsim({"run", scenario});
    EXPECT_EQ(outcome.status, wrongUsage) << file;
    EXPECT_NE(outcome.errors.find(problem), std::string::npos) << outcome.errors;
  }
}

// A file that inspect takes is one that a scenario may name.
TEST_F(CommandLineTest, ReadsAPayloadInEveryUnicodeForm) {
  std::string wide = "\xfe\xff";
  for (const char character : std::string_view(R"({"aps": {"alert": "x"}, "club": "gold"})")) {
    wide += {'\0', character};
  }
  static_cast<void>(write("wide.apns", wide));
  const std::string scenario = write("scenario.json", R"({
    "host": {"notificationDelegate": {"class": "Delegate", "implements": ["willPresent"]}},
    "steps": [{"do": "configure"}, {"do": "present", "userInfoFile": "wide.apns"}],
    "expect": [{"kind": "event", "data": {"club": "gold"}}]})");
  const Outcome outcome = zibsim({"run", scenario});
  EXPECT_EQ(outcome.status, allAsExpected) << outcome.errors;
  EXPECT_EQ(zibsim({"inspect", path("wide.apns")}).status, allAsExpected);
}

TEST_F(CommandLineTest, ShowsNoTextAsALineOfItsOwn) {
  const std::string file = write("forged.json", R"({
    "name": "a\u001b[31mb", "host": {"appDelegate": {"class": "AppDelegate"}},
    "steps": [{"do": "configure"},
              {"do": "registrationFailure",
               "error": {"domain": "d", "code": 1,
                         "description": "no\nevent notification-clicked\u009b1m\u202ex\u2028"}}]})");
  const Outcome outcome = zibsim({"run", "--format", "timeline", file});
  EXPECT_EQ(outcome.status, allAsExpected) << outcome.errors;
  EXPECT_NE(outcome.output.find("a\\u001b[31mb"), std::string::npos) << outcome.output;
  EXPECT_NE(outcome.output.find("no\\u000aevent notification-clicked\\u009b1m\\u202ex\\u2028"),
            std::string::npos)
      << outcome.output;
  for (const char* raw : {"\x1b", "\nevent", "\u009b", "\u202e", "\u2028"}) {
    EXPECT_EQ(outcome.output.find(raw), std::string::npos) << raw;
  }
}

TEST_F(CommandLineTest, ComparesNoTimelineNestedWithoutEnd) {
  const std::string levels(100'000, '[');
  const std::string deep =
      write("deep", R"({"kind": "event", "data": )" + levels + std::string(100'000, ']') + "}\n");
  const std::string text = write("text", R"({"kind": "event", "data": "\")" + levels + "\"}\n");
  EXPECT_EQ(zibsim({"diff", text, text}).status, allAsExpected);
  const Outcome outcome = zibsim({"diff", deep, text});
  EXPECT_EQ(outcome.status, wrongUsage);
  EXPECT_NE(outcome.errors.find("line 1: the line is nested deeper than 4096 levels"),
            std::string::npos)
      << outcome.errors;
}

TEST_F(CommandLineTest, HelpsAndTellsItsVersion) {
  EXPECT_EQ(zibsim({"--help"}).status, allAsExpected);
  EXPECT_NE(zibsim({"--help"}).output.find("run"), std::string::npos);
  EXPECT_EQ(zibsim({"--version"}).status, allAsExpected);
  EXPECT_TRUE(zibsim({"--version"}).output.starts_with("zibsim "));
}

// The options, as the page writes them, that a command's help names.
std::set<std::string> optionsIn(const std::string& help) {
  std::set<std::string> options;
  const std::regex option("--[a-z][a-z-]*");
  for (std::sregex_iterator match(help.begin(), help.end(), option), end; match != end; ++match) {
    options.insert(std::regex_replace(match->str(), std::regex("-"), "\\-"));
  }
  return options;
}

TEST_F(CommandLineTest, HasAPageInTheManualForEachCommandAndOption) {
  const std::string page = contentsOf(ZIBSIM_MANUAL);
  const std::regex command("\n  ([a-z]+) +[A-Z]");
  const std::string help = zibsim({"--help"}).output;
  int commands = 0;
  for (std::sregex_iterator match(help.begin(), help.end(), command), end; match != end; ++match) {
    ++commands;
    const std::string name = (*match)[1];
    EXPECT_NE(page.find("\n.SS " + name + "\n"), std::string::npos) << name;
    for (const std::string& option : optionsIn(zibsim({name, "--help"}).output)) {
      EXPECT_NE(page.find(option), std::string::npos) << name << " " << option;
    }
  }
  EXPECT_GE(commands, 5);
}

TEST_F(CommandLineTest, RefusesWhatItDoesNotKnow) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
      {{}, "zibsim: A subcommand is required; allowed: see zibsim --help\n"},
      {{"play"},
       "zibsim: no command \"play\"; allowed: run, inspect, serve, diff, record, schema, --help, "
       "--version\n"},
      {{"a\nb"},
       "zibsim: no command \"a\\u000ab\"; allowed: run, inspect, serve, diff, record, schema, "
       "--help, "
       "--version\n"},
      {{"run"}, "zibsim: SCENARIO.json is required; allowed: see zibsim --help\n"},
      {{"run", "--format", "xml", "-"},
       "zibsim: --format: xml not in {timeline,jsonl,html}; allowed: see zibsim --help\n"},
      {{"run", "-", "-"}, "zibsim: -: (root): standard input is named twice; allowed: once\n"},
  };
  for (const auto& [arguments, message] : cases) {
    const Outcome outcome = zibsim(arguments);
    EXPECT_EQ(outcome.status, wrongUsage);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, message);
  }
}

TEST_F(CommandLineTest, RefusesFilesThatCannotBeRead) {
  const Outcome missing = zibsim({"run", path("none.json")});
  EXPECT_EQ(missing.status, wrongUsage);
  EXPECT_EQ(missing.errors, "zibsim: " + path("none.json") +
                                ": (root): cannot be read: No such file or directory; allowed: a "
                                "scenario file, a folder of them, or - for standard input\n");
  const Outcome folder = zibsim({"run", path("")});
  EXPECT_EQ(folder.status, wrongUsage);
  EXPECT_NE(folder.errors.find("there is no .json file in it"), std::string::npos);
}

TEST_F(CommandLineTest, RunsNothingIfOneScenarioIsInvalid) {
  const std::string good = write("good.json", twoSteps);
  const std::string bad = write("bad.json", R"({"steps": [{"do": "state"}, {"do": 5}]})");
  const Outcome outcome = zibsim({"run", "--output", path("timeline"), good, bad});
  EXPECT_EQ(outcome.status, wrongUsage);
  EXPECT_EQ(outcome.output, "");
  EXPECT_TRUE(outcome.errors.starts_with("zibsim: " + bad + ": /steps/1/do: got 5; allowed: "));
  EXPECT_FALSE(std::filesystem::exists(path("timeline")));
}

TEST_F(CommandLineTest, PrintsOneEntryALine) {
  const Outcome outcome = zibsim({"run", "--format", "jsonl", write("a.json", twoSteps)});
  EXPECT_EQ(outcome.status, allAsExpected);
  EXPECT_EQ(outcome.errors, "1 passed, 0 failed\n");
  const auto entries = entriesIn(outcome.output);
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_EQ(entries[0], Json::parse(R"({"t": 0.0, "thread": "main", "kind": "step", "index": 0,
                                        "do": "state"})"));
  EXPECT_EQ(entries[1], Json::parse(R"({"t": 0.0, "thread": "main", "kind": "state",
      "isPushEnabled": false, "fcmToken": null, "apnsToken": null, "isSwizzlingEnabled": true,
      "savedFirebasePlistPath": null})"));
  EXPECT_EQ(entries[2].at("do"), "advance");
}

TEST_F(CommandLineTest, PrintsForPeopleByDefault) {
  const std::string file = write("a.json", twoSteps);
  const Outcome outcome = zibsim({"run", file});
  EXPECT_EQ(outcome.status, allAsExpected);
  EXPECT_TRUE(outcome.output.starts_with("two\n"));
  EXPECT_EQ(outcome.output, zibsim({"run", "--format", "timeline", file}).output);
  EXPECT_EQ(outcome.output.find('\x1b'), std::string::npos);
}

TEST_F(CommandLineTest, ReadsStandardInput) {
  const Outcome outcome = zibsim({"run", "--format", "jsonl", "-"}, twoSteps);
  EXPECT_EQ(outcome.status, allAsExpected);
  EXPECT_EQ(entriesIn(outcome.output).size(), 3U);
  const Outcome invalid = zibsim({"run", "-"}, "{}");
  EXPECT_EQ(invalid.status, wrongUsage);
  EXPECT_TRUE(invalid.errors.starts_with("zibsim: -: (root): "));
}

TEST_F(CommandLineTest, WritesToAFile) {
  const std::string file = write("a.json", twoSteps);
  const Outcome outcome = zibsim({"run", "--format", "jsonl", "--output", path("timeline"), file});
  EXPECT_EQ(outcome.status, allAsExpected);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(entriesIn(contentsOf(path("timeline"))).size(), 3U);
  const Outcome refused = zibsim({"run", "--output", path("none/timeline"), file});
  EXPECT_EQ(refused.status, wrongUsage);
  EXPECT_NE(refused.errors.find("cannot be written: No such file or directory"), std::string::npos);
}

TEST_F(CommandLineTest, NamesTheScenarioOfEachEntryWithSeveralFiles) {
  const std::string named = write("a.json", twoSteps);
  const std::string unnamed = write("b.json", R"({"steps": [{"do": "state"}]})");
  const auto entries =
      entriesIn(zibsim({"run", "--format", "jsonl", named, unnamed, named}).output);
  ASSERT_EQ(entries.size(), 8U);
  EXPECT_EQ(entries[0].at("scenario"), "two");
  EXPECT_EQ(entries[2].at("scenario"), "two");
  EXPECT_EQ(entries[3].at("scenario"), "b");
  EXPECT_EQ(entries[4].at("scenario"), "b");
  EXPECT_EQ(entries[7].at("scenario"), "two");
  for (const Json& entry : entriesIn(zibsim({"run", "--format", "jsonl", named}).output)) {
    EXPECT_FALSE(entry.contains("scenario"));
  }
}

TEST_F(CommandLineTest, FailsWithTheNearestEntriesWhenAnExpectationIsNotMet) {
  const std::string file = write("a.json", unmet);
  const std::string met = write("b.json", twoSteps);
  const Outcome lines = zibsim({"run", "--format", "jsonl", file, met});
  EXPECT_EQ(lines.status, expectationNotMet);
  EXPECT_EQ(entriesIn(lines.output).size(), 5U);
  EXPECT_NE(lines.errors.find("unmet: expectation 0 is not met: {\"kind\":\"event\"}"),
            std::string::npos);
  EXPECT_NE(
      lines.errors.find("nearest entries:\n    {\"t\":0.0,\"thread\":\"main\",\"kind\":\"state\""),
      std::string::npos);
  const Outcome people = zibsim({"run", file});
  EXPECT_EQ(people.status, expectationNotMet);
  EXPECT_EQ(people.errors, "");
  EXPECT_NE(people.output.find("expectation 1 is not met"), std::string::npos);
  const Outcome toFile = zibsim({"run", "--output", path("timeline"), file});
  EXPECT_EQ(toFile.status, expectationNotMet);
  EXPECT_NE(toFile.errors.find("expectation 1 is not met"), std::string::npos);
}

TEST_F(CommandLineTest, FailsOnAProblemWhenItIsStrict) {
  const std::string file = write("a.json", R"({"name": "silent host",
      "host": {"notificationDelegate": {"class": "Push", "implements": ["didReceive"],
                                        "completes": false}},
      "steps": [{"do": "respond", "userInfo": {}}],
      "expect": [{"kind": "problem", "code": "completionNeverCalled"}]})");
  const std::string flawless = write("b.json", twoSteps);
  EXPECT_EQ(zibsim({"run", file, flawless}).status, allAsExpected);
  EXPECT_EQ(zibsim({"run", "--strict", flawless}).status, allAsExpected);
  const Outcome strict = zibsim({"run", "--strict", "--format", "jsonl", flawless, file});
  EXPECT_EQ(strict.status, expectationNotMet);
  EXPECT_TRUE(strict.errors.starts_with(
      "silent host: a problem, which --strict does not allow:\n    {\"t\":0.0,"))
      << strict.errors;
  EXPECT_NE(strict.errors.find("\"code\":\"completionNeverCalled\""), std::string::npos);
}

TEST_F(CommandLineTest, PlaysTheFilesOfAFolderInOrderOfName) {
  std::filesystem::create_directory(path("folder"));
  for (const std::string name : {"c", "a", "b"}) {
    static_cast<void>(write("folder/" + name + ".json", R"({"steps": [{"do": "state"}]})"));
  }
  static_cast<void>(write("folder/payload.apns", "{}"));
  std::vector<Json> names;
  for (const Json& entry : entriesIn(zibsim({"run", "--format", "jsonl", path("folder")}).output)) {
    names.push_back(entry.at("scenario"));
  }
  EXPECT_EQ(names, (std::vector<Json>{"a", "a", "b", "b", "c", "c"}));
}

TEST_F(CommandLineTest, NamesEachInvalidFile) {
  const Outcome outcome =
      zibsim({"run", write("a.json", "{}"), write("b.json", "[]"), write("c.json", twoSteps)});
  EXPECT_EQ(outcome.status, wrongUsage);
  EXPECT_NE(outcome.errors.find("zibsim: " + path("a.json") + ": (root): "), std::string::npos);
  EXPECT_NE(outcome.errors.find("\nzibsim: " + path("b.json") + ": (root): "), std::string::npos);
}

TEST_F(CommandLineTest, EndsWithATallyThatNamesWhatFailed) {
  const std::string met = write("met.json", twoSteps);
  const std::string file = write("file.json", unmet);
  const std::string tally = "2 passed, 1 failed: " + file + " (\"unmet\")\n";
  const Outcome people = zibsim({"run", met, file, met});
  EXPECT_EQ(people.status, expectationNotMet);
  EXPECT_TRUE(people.output.ends_with(tally)) << people.output;
  const Outcome lines = zibsim({"run", "--format", "jsonl", met, file, met});
  EXPECT_TRUE(lines.errors.ends_with(tally)) << lines.errors;
}

TEST_F(CommandLineTest, PrintsInTheOrderGivenHoweverManyPlayAtATime) {
  std::vector<std::string> arguments{"run", "--format", "jsonl", "--jobs", "1"};
  for (int index = 0; index < 20; ++index) {
    const Json steps = std::vector<Json>(static_cast<std::size_t>(20 - index), {{"do", "state"}});
    arguments.push_back(write(std::to_string(index) + ".json", Json{{"steps", steps}}.dump()));
  }
  const std::string oneByOne = zibsim(arguments).output;
  arguments[4] = "8";
  EXPECT_EQ(zibsim(arguments).output, oneByOne);
  arguments[4] = "0";
  EXPECT_EQ(zibsim(arguments).status, wrongUsage);
}

TEST_F(CommandLineTest, WritesAReportForCISystems) {
  const std::string report = path("report.xml");
  const Outcome outcome = zibsim({"run", "--junit", report, write("a.json", twoSteps),
                                  write("b.json", R"({"name": "<&\"\u0001", "steps": [],
                                      "expect": [{"kind": "event"}]})")});
  EXPECT_EQ(outcome.status, expectationNotMet);
  const std::string xml = contentsOf(report);
  EXPECT_NE(xml.find("<testsuite name=\"zibsim\" tests=\"2\" failures=\"1\" errors=\"0\">"),
            std::string::npos)
      << xml;
  EXPECT_NE(xml.find("<testcase name=\"two\" classname=\"" + path("a.json")), std::string::npos);
  EXPECT_NE(xml.find("<testcase name=\"&lt;&amp;&quot;\uFFFD\""), std::string::npos) << xml;
  EXPECT_NE(xml.find("<failure message=\"expectation 0 is not met: {&quot;kind"),
            std::string::npos);
}

TEST_F(CommandLineTest, ShowsATimelineAsAPage) {
  const Outcome outcome = zibsim({"run", "--format", "html", write("a.json", unmet)});
  EXPECT_EQ(outcome.status, expectationNotMet);
  EXPECT_TRUE(outcome.output.starts_with("<!doctype html>"));
  EXPECT_NE(outcome.output.find("<li class=\"unmet\" id=\"expectation-0-0\">"), std::string::npos);
  EXPECT_TRUE(outcome.errors.ends_with("0 passed, 1 failed: " + path("a.json") + " (\"unmet\")\n"));
}

std::vector<std::string> allIn(const std::string& text, const std::string& pattern) {
  std::vector<std::string> found;
  const std::regex regex(pattern);
  for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match) {
    found.push_back((*match)[1]);
  }
  return found;
}

TEST_F(CommandLineTest, LinksExpectationsAndEntriesOnThePage) {
  const std::string met = write("met.json", R"({"steps": [{"do": "state"}, {"do": "state"}],
      "expect": [{"kind": "state"}, {"kind": "step", "index": 1},
                 {"unordered": [{"kind": "state"}]}, {"absent": {"kind": "event"}}]})");
  const Outcome outcome = zibsim({"run", "--format", "html", met, write("unmet.json", unmet)});
  const std::vector<std::string> places = allIn(outcome.output, " id=\"([^\"]*)\"");
  const std::set<std::string> distinct(places.begin(), places.end());
  EXPECT_EQ(distinct.size(), places.size());
  for (const std::string& link : allIn(outcome.output, "href=\"#([^\"]*)\"")) {
    EXPECT_TRUE(distinct.contains(link)) << link;
  }
  // The entries of the first: step, state, step, state. Of the second: step, state.
  const std::vector<std::string> byExpectation{"0-1", "0-2", "0-3"};
  const std::vector<std::string> toEntries =
      allIn(outcome.output, "<p class=\"entries\">by <a href=\"#entry-([^\"]*)\"");
  EXPECT_EQ(toEntries, byExpectation);
  EXPECT_EQ(allIn(outcome.output, "class=\"expected met\" href=\"#expectation-([^\"]*)\""),
            (std::vector<std::string>{"0-0", "0-1", "0-2"}));
  const std::vector<std::string> toNearest =
      allIn(outcome.output, "<p class=\"entries\">see <a href=\"#entry-([^\"]*)\"");
  EXPECT_EQ(toNearest, (std::vector<std::string>{"1-0", "1-1"}));
}

TEST_F(CommandLineTest, InspectsAPayload) {
  const std::string file =
      write("p.apns", R"({"aps": {"alert": "x"}, "club": "gold", "url": "a:b"})");
  const Json json = Json::parse(zibsim({"inspect", "--format", "json", file}).output);
  EXPECT_EQ(json.at("event").at("club"), "gold");
  EXPECT_EQ(json.at("event").at("event_type"), "notification-clicked");
  EXPECT_EQ(json.at("link").at("url"), "a:b");
  const Outcome text = zibsim({"inspect", "-"}, contentsOf(file));
  EXPECT_EQ(text.status, allAsExpected);
  EXPECT_NE(text.output.find("Tapped, it opens a:b"), std::string::npos);
  const Outcome shown =
      zibsim({"inspect", "--event-type", "notification-delivered", "--format", "html", file});
  EXPECT_NE(shown.output.find("notification-delivered"), std::string::npos);
}

TEST_F(CommandLineTest, RefusesWhatIsNoPayload) {
  const Outcome list = zibsim({"inspect", "-"}, "[]");
  EXPECT_EQ(list.status, wrongUsage);
  EXPECT_EQ(list.output, "");
  EXPECT_EQ(list.errors,
            "zibsim: -: (root): got a list; allowed: a JSON object, such as an .apns file\n");
  EXPECT_EQ(zibsim({"inspect", path("none")}).status, wrongUsage);
  EXPECT_EQ(zibsim({"inspect", path("")}).status, wrongUsage);
  EXPECT_EQ(zibsim({"inspect"}).status, wrongUsage);
}

TEST_F(CommandLineTest, NamesAllThatIsWrongWithAFile) {
  const Outcome outcome = zibsim({"run", "-"}, R"({"steps": [{"do": "stat"}, {"do": 5}],
                                                   "host": {"scenes": 5}})");
  EXPECT_EQ(outcome.status, wrongUsage);
  for (const char* const place : {"/steps/0/do: ", "/steps/1/do: ", "/host/scenes: "}) {
    EXPECT_NE(outcome.errors.find(std::string("zibsim: -: ") + place), std::string::npos)
        << outcome.errors;
  }
  EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 3);
}

TEST_F(CommandLineTest, PrintsTheSchemaOfAScenario) {
  const Outcome outcome = zibsim({"schema"});
  EXPECT_EQ(outcome.status, allAsExpected);
  const Json schema = Json::parse(outcome.output);
  EXPECT_EQ(schema.at("$schema"), "https://json-schema.org/draft/2020-12/schema");
  EXPECT_EQ(schema.at("required"), Json::array({"steps"}));
}

TEST_F(CommandLineTest, ComparesTimelinesByWhatHappened) {
  const std::string before = R"({"t": 0.0, "thread": "main", "kind": "step", "index": 0}
{"t": 0.0, "thread": "main", "kind": "event", "data": {"club": "gold"}}
{"t": 0.0, "thread": "main", "kind": "log", "message": "a"}
{"t": 0.0, "thread": "main", "kind": "completion", "of": "didReceive"}
)";
  const std::string later =
      R"({"t": 1.5, "thread": "main", "kind": "event", "data": {"club": "gold"}}
{"t": 2.0, "thread": "main", "kind": "completion", "of": "didReceive"}
)";
  const std::string other =
      R"({"t": 0.0, "thread": "main", "kind": "event", "data": {"club": "tin"}}
{"t": 0.0, "thread": "main", "kind": "completion", "of": "didReceive"}
)";
  const std::string file = write("before.jsonl", before);
  const Outcome same = zibsim({"diff", file, write("later.jsonl", later)});
  EXPECT_EQ(same.status, allAsExpected);
  EXPECT_EQ(same.output, "");
  const Outcome different = zibsim({"diff", file, "-"}, other);
  EXPECT_EQ(different.status, expectationNotMet);
  EXPECT_EQ(different.output,
            "- event data={\"club\":\"gold\"}\n+ event data={\"club\":\"tin\"}\n"
            "  completion of=\"didReceive\"\n");
  const Outcome invalid = zibsim({"diff", file, "-"}, "{}\n[");
  EXPECT_EQ(invalid.status, wrongUsage);
  EXPECT_TRUE(invalid.errors.starts_with("zibsim: -: line 1: the line is no entry"));
}

TEST_F(CommandLineTest, KeepsEachScenarioInAProcessOfItsOwn) {
  const std::string file = write("a.json", R"({"steps": [{"do": "configure"}],
      "expect": [{"absent": {"message": "ZibMessaging already configured"}}]})");
  EXPECT_EQ(zibsim({"run", file, file}).status, allAsExpected);
}

TEST_F(CommandLineTest, RunsTheSameWayEachTime) {
  const std::string file = write("a.json", R"({"host": {"firebase": {}, "scenes": [{}]}, "steps": [
      {"do": "configure"}, {"do": "registerForPush"}, {"do": "advance", "seconds": 3},
      {"do": "call", "operation": "setPushToken", "arguments": {"hex": "ab"}, "thread": "other"},
      {"do": "fcmToken", "token": "abc", "thread": "firebase"}]})");
  const Outcome outcome = zibsim({"run", "--format", "jsonl", file});
  EXPECT_EQ(outcome.status, allAsExpected);
  for (int run = 0; run < 3; ++run) {
    EXPECT_EQ(zibsim({"run", "--format", "jsonl", file}).output, outcome.output);
  }
}

TEST_F(CommandLineTest, CarriesPayloadsOfEveryKindUnchanged) {
  const Json userInfo = Json::parse(R"({"text": "ä🎁\u0000\n\"", "empty": "", "zero": 0,
      "least": -9223372036854775808, "most": 18446744073709551615, "real": 0.1, "large": 1e300,
      "yes": true, "no": false, "null": null, "list": [1, [], {}, null, "a"],
      "object": {"a": {"b": [{"c": false}]}}, "": "no key", "1": {"2": 3}})");
  const Json scenario = {
      {"steps",
       {{{"do", "call"}, {"operation", "willPresent"}, {"arguments", {{"userInfo", userInfo}}}}}}};
  const Outcome outcome = zibsim({"run", "--format", "jsonl", "-"}, scenario.dump());
  EXPECT_EQ(outcome.status, allAsExpected);
  Json reported;
  for (const Json& entry : entriesIn(outcome.output)) {
    if (entry.at("kind") == "delegate") reported = entry.at("userInfo");
  }
  EXPECT_EQ(reported.dump(), userInfo.dump());
}

TEST_F(CommandLineTest, WritesNothingThatBreaksALine) {
  const Outcome outcome = zibsim({"run", "--format", "jsonl", "-"},
                                 R"({"steps": [{"do": "call", "operation": "createEventPayload",
                     "arguments": {"eventName": "a\u0085b\u2028c\u2029d\ne"}}]})");
  EXPECT_NE(outcome.output.find(R"("a\u0085b\u2028c\u2029d\ne")"), std::string::npos);
  EXPECT_EQ(entriesIn(outcome.output).back().at("value").at("event_name"),
            "a\u0085b\u2028c\u2029d\ne");
}

TEST_F(CommandLineTest, TakesNullForWhatIsNotThere) {
  EXPECT_EQ(zibsim({"run", "-"}, R"({
    "core": {"config": null, "pushConfigEndpoint": null},
    "device": {"authorization": {"error": null}},
    "host": {"appDelegate": {"class": "App", "superclass": null}, "firebase": null,
             "notificationDelegate": null, "urlDelegate": null},
    "steps": [{"do": "configurePush", "endpoint": null, "firebase": null}],
    "expect": [{"kind": "log",
                "message": "Push config endpoint not available - SDK not initialized?"}]})")
                .status,
            allAsExpected);
}

// A payload of 1 MB, nested 1,000 levels deep.
Json heavyPayload() {
  Json deep = "bottom";
  for (int level = 0; level < 998; ++level) {
    deep = level % 2 == 0 ? Json{{"level", std::move(deep)}} : Json::array({std::move(deep)});
  }
  return {{"deep", std::move(deep)},
          {"club", std::string(1'000'000, 'x')},
          {"pn_campaign_id", "heavy"}};
}

TEST_F(CommandLineTest, CarriesHeavyPayloads) {
  const Json userInfo = heavyPayload();
  const Json scenario = {
      {"host", {{"notificationDelegate", {{"class", "Push"}, {"implements", {"willPresent"}}}}}},
      {"steps", {{{"do", "configure"}}, {{"do", "present"}, {"userInfo", userInfo}}}},
      {"expect",
       {{{"kind", "event"}, {"data", {{"pn_campaign_id", "heavy"}}}},
        {{"kind", "delegate"}, {"userInfo", userInfo}},
        {{"kind", "host"}, {"userInfo", userInfo}},
        {{"kind", "completion"}, {"of", "willPresent"}}}}};
  EXPECT_EQ(zibsim({"run", "-"}, scenario.dump()).status, allAsExpected);
}

std::optional<pid_t> childOf(pid_t process) {
  const std::string id = std::to_string(process);
  pid_t child = 0;
  std::ifstream stream("/proc/" + id + "/task/" + id + "/children");
  return stream >> child ? std::optional(child) : std::nullopt;
}

// A run in its midst: nobody reads what it writes, which is more than the pipes between the
// processes hold.
class RunInProgressTest : public CommandLineTest {
 protected:
  RunInProgressTest() {
    ::setenv("TMPDIR", path("tmp").c_str(), 1);  // NOLINT(concurrency-mt-unsafe): nobody else runs
    std::filesystem::create_directory(path("tmp"));
    const Json step = {{"do", "call"},
                       {"operation", "willPresent"},
                       {"arguments", {{"userInfo", {{"text", std::string(10'000, 'x')}}}}}};
    const std::string file =
        write("a.json", Json{{"name", "long"}, {"steps", std::vector<Json>(100, step)}}.dump());
    EXPECT_EQ(::mkfifo(path("out").c_str(), 0600), 0);
    reader_ = ::open(path("out").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    zibsim_ = start({"run", "--format", "jsonl", file});
    // Not the ones that Foundation has while it starts, on some systems.
    while (left().empty()) pause();
    std::optional<pid_t> child;
    while (!(child = childOf(zibsim_))) pause();
    child_ = *child;
  }

  static void pause() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

  // What stands in the folder for temporary files.
  [[nodiscard]] std::vector<std::filesystem::path> left() const {
    return {std::filesystem::directory_iterator(path("tmp")), {}};
  }

  int reader_ = -1;
  pid_t zibsim_ = -1;
  pid_t child_ = -1;
};

TEST_F(RunInProgressTest, TellsThatTheProcessOfAScenarioDied) {
  // The first entry has come.
  pollfd output{reader_, POLLIN, 0};
  ASSERT_EQ(::poll(&output, 1, -1), 1);
  ASSERT_EQ(::kill(child_, SIGKILL), 0);
  ASSERT_EQ(::fcntl(reader_, F_SETFL, 0), 0);
  std::string buffer(65536, '\0');
  while (::read(reader_, buffer.data(), buffer.size()) > 0) continue;
  ::close(reader_);
  EXPECT_EQ(statusOf(zibsim_), processDied);
  const std::string errors = contentsOf(path("err"));
  EXPECT_TRUE(errors.starts_with(
      "zibsim: the process of \"long\" died: it was killed by the signal SIGKILL\n"
      "  its last entries:\n    {\"t\":0.0,"))
      << errors;
  EXPECT_TRUE(errors.ends_with("0 passed, 1 failed: " + path("a.json") + " (\"long\")\n"))
      << errors;
  EXPECT_TRUE(left().empty());
}

TEST_F(RunInProgressTest, LeavesNothingWhenItsReaderGoes) {
  ::close(reader_);
  EXPECT_EQ(statusOf(zibsim_), wrongUsage);
  EXPECT_EQ(contentsOf(path("err")),
            "zibsim: the output cannot be written; allowed: a place with room for it\n");
  EXPECT_TRUE(left().empty());
}

class InterruptedRunTest : public RunInProgressTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(BySignal, InterruptedRunTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_P(InterruptedRunTest, LeavesNothingAndEndsByTheSignal) {
  ASSERT_EQ(::kill(zibsim_, GetParam()), 0);
  // The write that is under way is let through.
  ::close(reader_);
  int status = 0;
  ASSERT_EQ(::waitpid(zibsim_, &status, 0), zibsim_);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == GetParam());
  EXPECT_EQ(::kill(child_, 0), -1);
  EXPECT_TRUE(left().empty());
}

}  // namespace
