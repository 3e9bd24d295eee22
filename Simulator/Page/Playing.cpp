#include "Simulator/Page/Playing.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <vector>

#include "Simulator/Timeline/Timeline.h"

namespace sim {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{15};
constexpr std::chrono::seconds grace{2};
constexpr std::size_t largestDocument = std::size_t{16} << 20U;

// Finds where a scenario names a file: such a key of an answer of the network, or of a step. Every
// other key may be anything.
class FileFinder final : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return true; }
  bool boolean(bool) override { return true; }
  bool number_integer(number_integer_t) override { return true; }
  bool number_unsigned(number_unsigned_t) override { return true; }
  bool number_float(number_float_t, const string_t&) override { return true; }
  bool string(string_t&) override { return true; }
  bool binary(binary_t&) override { return true; }
  bool start_object(std::size_t) override { return enter(); }
  bool start_array(std::size_t) override { return enter(); }
  bool end_object() override { return leave(); }
  bool end_array() override { return leave(); }
  bool key(string_t& key) override {
    constexpr std::size_t ofAnswer = 4;
    constexpr std::size_t ofStep = 3;
    if (depth_ == 1) section_ = key;
    const bool isInAnswer = section_ == "network" && depth_ == ofAnswer && key == "file";
    const bool isInStep = section_ == "steps" && depth_ == ofStep && key == "userInfoFile";
    found_ = found_ || isInAnswer || isInStep;
    return true;
  }
  // What is no JSON is left to the reader, which says it better.
  bool parse_error(std::size_t, const std::string&, const Json::exception&) override {
    return false;
  }

  [[nodiscard]] bool found() const { return found_; }

 private:
  bool enter() {
    ++depth_;
    return true;
  }
  bool leave() {
    --depth_;
    return true;
  }

  std::size_t depth_ = 0;
  std::string section_;
  bool found_ = false;
};

// The pipes to and from the process, each end closed at the latest with this object.
class Pipe {
 public:
  Pipe() : isOpen_(::pipe2(ends_.data(), O_CLOEXEC) == 0) {}
  ~Pipe() {
    closeReading();
    closeWriting();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  [[nodiscard]] bool isOpen() const { return isOpen_; }
  [[nodiscard]] int reading() const { return ends_[0]; }
  [[nodiscard]] int writing() const { return ends_[1]; }
  void closeReading() { closeEnd(ends_[0]); }
  void closeWriting() { closeEnd(ends_[1]); }

 private:
  static void closeEnd(int& end) {
    if (end >= 0) ::close(end);
    end = -1;
  }

  std::array<int, 2> ends_{-1, -1};
  bool isOpen_;
};

struct Pipes {
  Pipe input;
  Pipe output;
  Pipe errors;
};

// Between fork and exec in a process with threads: nothing but system calls.
[[noreturn]] void becomeZibsim(const char* program, char* const* arguments, const Pipes& pipes) {
  constexpr rlim_t seconds = 10;
  const rlimit processor{seconds, seconds};
  ::setrlimit(RLIMIT_CPU, &processor);
  const rlimit noCore{0, 0};
  ::setrlimit(RLIMIT_CORE, &noCore);
  ::dup2(pipes.input.reading(), STDIN_FILENO);
  ::dup2(pipes.output.writing(), STDOUT_FILENO);
  ::dup2(pipes.errors.writing(), STDERR_FILENO);
  ::execv(program, arguments);
  ::_exit(127);
}

pid_t start(const std::string& program, const Pipes& pipes) {
  std::vector<std::string> words{program, "run", "--format", "html", "--jobs", "1", "-"};
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const pid_t child = ::fork();
  if (child == 0) becomeZibsim(program.c_str(), arguments.data(), pipes);
  return child;
}

// Writes and reads at once, so that neither side waits for the other for ever. False when it took
// too long or became too much.
bool exchange(Pipes& pipes, std::string_view input, std::string& output, std::string& errors) {
  const auto end = Clock::now() + patience;
  ::fcntl(pipes.input.writing(), F_SETFL, O_NONBLOCK);
  const auto readInto = [](std::string& text, Pipe& pipe) {
    std::array<char, 65536> buffer{};
    const ssize_t count = ::read(pipe.reading(), buffer.data(), buffer.size());
    if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
    if (count == 0 || (count < 0 && errno != EINTR)) pipe.closeReading();
  };
  while (pipes.output.reading() >= 0 || pipes.errors.reading() >= 0) {
    if (output.size() + errors.size() > largestDocument) return false;
    if (input.empty()) pipes.input.closeWriting();
    std::array<pollfd, 3> files{{{pipes.output.reading(), POLLIN, 0},
                                 {pipes.errors.reading(), POLLIN, 0},
                                 {pipes.input.writing(), POLLOUT, 0}}};
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    if (left <= 0) return false;
    if (::poll(files.data(), files.size(), static_cast<int>(left)) < 0 && errno != EINTR) {
      return false;
    }
    if (files[0].revents != 0) readInto(output, pipes.output);
    if (files[1].revents != 0) readInto(errors, pipes.errors);
    if (files[2].revents != 0) {
      const ssize_t count = ::write(pipes.input.writing(), input.data(), input.size());
      if (count > 0) input.remove_prefix(static_cast<std::size_t>(count));
      if (count < 0 && errno != EAGAIN && errno != EINTR) input = {};
    }
  }
  return true;
}

// It clears away what the scenario left, if it gets the time.
void end(pid_t child) {
  ::kill(child, SIGTERM);
  const auto deadline = Clock::now() + grace;
  while (Clock::now() < deadline) {
    if (::waitpid(child, nullptr, WNOHANG) == child) return;
    ::poll(nullptr, 0, 10);
  }
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
}

// Without what names the program and standard input.
std::string withoutOrigin(std::string errors) {
  for (const std::string_view prefix : {"zibsim: -: ", "zibsim: "}) {
    for (std::size_t at = errors.find(prefix); at != std::string::npos;
         at = errors.find(prefix, at)) {
      const bool startsLine = at == 0 || errors[at - 1] == '\n';
      startsLine ? static_cast<void>(errors.erase(at, prefix.size())) : static_cast<void>(++at);
    }
  }
  while (errors.ends_with('\n')) errors.pop_back();
  return errors;
}

}  // namespace

Played playForPage(const std::string& program, std::string_view scenario) {
  FileFinder finder;
  Json::sax_parse(scenario, &finder);
  if (finder.found()) {
    return {std::nullopt, "the page reads no files: write into the scenario what they hold"};
  }
  Pipes pipes;
  if (!pipes.input.isOpen() || !pipes.output.isOpen() || !pipes.errors.isOpen()) {
    return {std::nullopt, "there is no pipe for the scenario's process"};
  }
  const pid_t child = start(program, pipes);
  if (child < 0) return {std::nullopt, "there is no process for the scenario"};
  pipes.input.closeReading();
  pipes.output.closeWriting();
  pipes.errors.closeWriting();
  std::string output;
  std::string errors;
  if (!exchange(pipes, scenario, output, errors)) {
    end(child);
    return {std::nullopt, "the scenario took more than 15 seconds or 16 MB, and was ended"};
  }
  ::waitpid(child, nullptr, 0);
  if (output.empty()) return {std::nullopt, withoutOrigin(std::move(errors))};
  return {std::move(output), {}};
}

}  // namespace sim
