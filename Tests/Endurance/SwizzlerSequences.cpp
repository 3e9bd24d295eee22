// Random sequences of other swizzlers' acts on random delegates, each in processes of its own, with
// the module and without: the host must not see a difference.
//   swizzler-sequences [FIRST [COUNT]]    seeds; 0 and 1000 unless given
// Ends with 1, and says how to see it again, at the first difference.

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "Simulator/Foundation/Foundation.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "Tests/Endurance/Sequence.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace {

using endurance::Outcome;
using endurance::Sequence;
using nlohmann::json;

json packed(const std::vector<Outcome>& outcomes) {
  json all = json::array();
  for (const Outcome& each : outcomes) {
    all.push_back({each.isAnswered, each.calls, each.completions, each.result, each.events});
  }
  return all;
}

std::vector<Outcome> unpacked(const std::string& text) {
  std::vector<Outcome> outcomes;
  const json all = json::parse(text, nullptr, false);
  if (!all.is_array()) return outcomes;
  for (const json& each : all) {
    outcomes.push_back({each[0].get<bool>(), each[1].get<std::vector<std::string>>(),
                        each[2].get<std::vector<std::string>>(), each[3].get<std::string>(),
                        each[4].get<std::size_t>()});
  }
  return outcomes;
}

std::string readAll(int file) {
  std::string text;
  std::array<char, 4096> buffer{};
  for (ssize_t count = 0; (count = ::read(file, buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

std::vector<Outcome> playInProcess(const Sequence& sequence, bool hasModule) {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) std::abort();
  const pid_t child = ::fork();
  if (child == 0) {
    const std::string text = packed(endurance::play(sequence, hasModule)).dump();
    const ssize_t written = ::write(ends[1], text.data(), text.size());
    std::_Exit(written == static_cast<ssize_t>(text.size()) ? EXIT_SUCCESS : EXIT_FAILURE);
  }
  ::close(ends[1]);
  const std::string text = readAll(ends[0]);
  ::close(ends[0]);
  ::waitpid(child, nullptr, 0);
  return unpacked(text);
}

std::optional<unsigned long> numberFrom(const char* text) {
  char* end = nullptr;
  const unsigned long number = std::strtoul(text, &end, 10);
  return *text != '\0' && *end == '\0' ? std::optional(number) : std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
  const auto first = argc > 1 ? numberFrom(argv[1]) : 0;
  const auto count = argc > 2 ? numberFrom(argv[2]) : 1000;
  if (!first || !count || argc > 3) {
    std::cerr << "swizzler-sequences: allowed: [FIRST [COUNT]], both numbers\n";
    return 2;
  }
  const zib::AutoreleasePool pool;
  sim::foundation::install();
  sim::uikit::install(sim::uikit::ApplicationPresence::present, true);
  sim::usernotifications::install(std::nullopt);
  for (unsigned long seed = *first; seed < *first + *count; ++seed) {
    const Sequence sequence = endurance::drawSequence(static_cast<std::uint32_t>(seed));
    const auto without = playInProcess(sequence, false);
    const auto with = playInProcess(sequence, true);
    const std::string difference = endurance::difference(sequence, with, without);
    if (difference.empty()) continue;
    std::cout << endurance::describe(sequence) << difference << "\nonce more: swizzler-sequences "
              << seed << " 1\n";
    return 1;
  }
  std::cout << *count << " sequences without a difference\n";
  return 0;
}
