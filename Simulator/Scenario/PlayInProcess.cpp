#include "Simulator/Scenario/PlayInProcess.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>
#include <stdexcept>

#include "Simulator/Device/Documents.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/HTTP/Library.h"
#include "Simulator/Scenario/Interruption.h"
#include "Simulator/Scenario/Player.h"

namespace sim {
namespace {

using Clock = std::chrono::steady_clock;

void writeAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) std::_Exit(EXIT_FAILURE);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

// An exception must not unwind into what the process was copied with.
[[noreturn]] void playAndExit(const Scenario& scenario, const std::filesystem::path& documents,
                              int file) noexcept {
  // Nobody would end it once the process that started it is gone.
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  Timeline::shared().setSink([file](const Json& entry) { writeAll(file, entry.dump() + '\n'); });
  play(scenario, documents);
  ::close(file);
  std::exit(EXIT_SUCCESS);  // NOLINT(concurrency-mt-unsafe): all threads have been joined
}

std::optional<Death> waitFor(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) throw std::runtime_error("waiting for a scenario's process failed");
  }
  if (WIFSIGNALED(status)) {
    const char* const name = ::sigabbrev_np(WTERMSIG(status));
    return "it was killed by the signal " +
           (name == nullptr ? std::to_string(WTERMSIG(status)) : "SIG" + std::string(name));
  }
  if (WEXITSTATUS(status) != EXIT_SUCCESS) {
    return "it ended early with status " + std::to_string(WEXITSTATUS(status));
  }
  return std::nullopt;
}

// The process of a scenario, which it plays from the start. Ends with this object.
class Process {
 public:
  Process(const Scenario& scenario, std::size_t index, const Interruption& interruption)
      : documents_(scenario.device.documents), index_(index), start_(Clock::now()) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe for a scenario's process");
    std::fflush(nullptr);
    child_ = ::fork();
    if (child_ < 0) throw std::runtime_error("no process for a scenario");
    if (child_ == 0) {
      interruption.stop();
      ::close(ends[0]);
      playAndExit(scenario, documents_.path(), ends[1]);
    }
    ::close(ends[1]);
    file_ = ends[0];
  }

  ~Process() {
    ::close(file_);
    if (child_ == 0) return;
    ::kill(child_, SIGKILL);
    ::waitpid(child_, nullptr, 0);
  }

  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  [[nodiscard]] int descriptor() const { return file_; }

  // Hands over what is there to read. False at the end.
  bool read(PlayListener& listener) {
    std::array<char, 65536> buffer{};
    const ssize_t count = ::read(file_, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) return true;
    if (count <= 0) return false;
    std::string_view rest(buffer.data(), static_cast<std::size_t>(count));
    for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
      pending_.append(rest.substr(0, end));
      rest.remove_prefix(end + 1);
      listener.entryCame(index_, Json::parse(pending_));
      pending_.clear();
    }
    pending_.append(rest);
    return true;
  }

  void tellEnd(PlayListener& listener) {
    const auto death = waitFor(std::exchange(child_, 0));
    const std::chrono::duration<double> time = Clock::now() - start_;
    listener.ended(index_, death, time.count());
  }

 private:
  DocumentsFolder documents_;
  std::size_t index_;
  Clock::time_point start_;
  pid_t child_ = 0;
  int file_ = -1;
  std::string pending_;
};

// Those that run, and the signal that ends them.
void pollFor(std::list<Process>& processes, const Interruption& interruption,
             PlayListener& listener) {
  std::vector<pollfd> files{{interruption.descriptor(), POLLIN, 0}};
  for (const Process& process : processes) files.push_back({process.descriptor(), POLLIN, 0});
  if (::poll(files.data(), files.size(), -1) < 0) {
    if (errno == EINTR) return;
    throw std::runtime_error("waiting for the processes of scenarios failed");
  }
  auto file = files.begin() + 1;
  for (auto process = processes.begin(); process != processes.end(); ++file) {
    if (file->revents == 0 || process->read(listener)) {
      ++process;
      continue;
    }
    process->tellEnd(listener);
    process = processes.erase(process);
  }
}

class SingleListener : public PlayListener {
 public:
  explicit SingleListener(const Timeline::Sink& sink) : sink_(sink) {}

  void entryCame(std::size_t /*scenario*/, Json entry) override { sink_(entry); }
  void ended(std::size_t /*scenario*/, const std::optional<Death>& death,
             double /*seconds*/) override {
    death_ = death;
  }
  [[nodiscard]] const std::optional<Death>& death() const { return death_; }

 private:
  const Timeline::Sink& sink_;
  std::optional<Death> death_;
};

// `at(index)` is the scenario.
template <class At>
void playAll(std::size_t count, std::size_t jobs, const At& at, PlayListener& listener) {
  // Once for all of them, since each starts as a copy of this process.
  foundation::prepare();
  for (std::size_t index = 0; index < count; ++index) {
    // Nor may each read any file: one whose Documents are read-only is nobody's for files.
    if (!at(index).network.empty()) static_cast<void>(httpLibrary());
  }
  // First, so that the folders are gone when a signal has its effect.
  const Interruption interruption;
  std::list<Process> processes;
  const auto goesOn = [&] { return !Interruption::hasCome() && listener.goesOn(); };
  for (std::size_t next = 0; goesOn() && (next < count || !processes.empty());) {
    if (next < count && processes.size() < std::max<std::size_t>(jobs, 1)) {
      processes.emplace_back(at(next), next, interruption);
      ++next;
    } else {
      pollFor(processes, interruption, listener);
    }
  }
}

}  // namespace

void playInProcesses(const std::vector<Scenario>& scenarios, std::size_t jobs,
                     PlayListener& listener) {
  const auto at = [&](std::size_t index) -> const Scenario& { return scenarios[index]; };
  playAll(scenarios.size(), jobs, at, listener);
}

std::optional<Death> playInProcess(const Scenario& scenario, const Timeline::Sink& sink) {
  SingleListener listener(sink);
  const auto at = [&](std::size_t) -> const Scenario& { return scenario; };
  playAll(1, 1, at, listener);
  return listener.death();
}

}  // namespace sim
