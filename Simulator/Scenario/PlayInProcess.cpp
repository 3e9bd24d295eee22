#include "Simulator/Scenario/PlayInProcess.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "Simulator/Device/Documents.h"
#include "Simulator/Scenario/Interruption.h"
#include "Simulator/Scenario/Player.h"

namespace sim {
namespace {

void writeAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) std::_Exit(EXIT_FAILURE);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

[[noreturn]] void playAndExit(const Scenario& scenario, const std::filesystem::path& documents,
                              int file) {
  Timeline::shared().setSink([file](const Json& entry) { writeAll(file, entry.dump() + '\n'); });
  play(scenario, documents);
  ::close(file);
  std::exit(EXIT_SUCCESS);  // NOLINT(concurrency-mt-unsafe): all threads have been joined
}

void readLines(int file, const Timeline::Sink& sink) {
  std::string pending;
  std::array<char, 65536> buffer{};
  for (;;) {
    const ssize_t count = ::read(file, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;
    std::string_view rest(buffer.data(), static_cast<std::size_t>(count));
    for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
      pending.append(rest.substr(0, end));
      rest.remove_prefix(end + 1);
      sink(Json::parse(pending));
      pending.clear();
    }
    pending.append(rest);
  }
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

}  // namespace

std::optional<Death> playInProcess(const Scenario& scenario, const Timeline::Sink& sink) {
  // First, so that the folder is gone when a signal has its effect.
  const Interruption interruption;
  const DocumentsFolder documents(scenario.device.documents);
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe for a scenario's process");
  std::fflush(nullptr);
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("no process for a scenario");
  if (child == 0) {
    interruption.stop();
    ::close(ends[0]);
    playAndExit(scenario, documents.path(), ends[1]);
  }
  Interruption::endInstead(child);
  ::close(ends[1]);
  readLines(ends[0], sink);
  ::close(ends[0]);
  return waitFor(child);
}

}  // namespace sim
