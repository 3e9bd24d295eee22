// Playing scenarios, each in a process of its own: the module's state is the process's.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Simulator/Scenario/Scenario.h"
#include "Simulator/Timeline/Timeline.h"

namespace sim {

// How the process of a scenario ended, if not well.
using Death = std::string;

// Learns what happens in the processes, on the thread that plays. Scenarios are named by their
// index; what one of them does comes in order, what several do as it happens.
class PlayListener {
 public:
  virtual ~PlayListener() = default;
  // Each entry of the timeline as it comes, also those before a death.
  virtual void entryCame(std::size_t scenario, Json entry) = 0;
  virtual void ended(std::size_t scenario, const std::optional<Death>& death, double seconds) = 0;
  // When false, the processes that still run are ended, and no other is started.
  [[nodiscard]] virtual bool goesOn() const { return true; }
};

// At most so many at a time. Call it while the calling process has a single thread.
void playInProcesses(const std::vector<Scenario>& scenarios, std::size_t jobs,
                     PlayListener& listener);

// A single one.
std::optional<Death> playInProcess(const Scenario& scenario, const Timeline::Sink& sink);

}  // namespace sim
