#include "Simulator/Scenario/PlayInProcess.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <csignal>

#include "Simulator/Scenario/Reader.h"

namespace {

using Act = void (*)();

// What the process of a scenario does as soon as it is there, instead of playing.
Act actOfChild = nullptr;

void letChildDoIt() {
  if (actOfChild != nullptr) actOfChild();
}

std::optional<sim::Death> deathAfter(Act act) {
  actOfChild = act;
  pthread_atfork(nullptr, nullptr, &letChildDoIt);
  const auto scenario = sim::readScenario(R"({"steps": [{"do": "state"}]})", "unnamed");
  const auto death = sim::playInProcess(scenario, [](const sim::Json&) {});
  actOfChild = nullptr;
  return death;
}

TEST(PlayInProcess, NamesTheSignalThatKilledTheProcess) {
  EXPECT_EQ(deathAfter([] { std::raise(SIGKILL); }), "it was killed by the signal SIGKILL");
}

TEST(PlayInProcess, TellsTheStatusOfAProcessThatEndedEarly) {
  EXPECT_EQ(deathAfter([] { ::_exit(7); }), "it ended early with status 7");
}

TEST(PlayInProcess, HandsOverTheEntriesInOrder) {
  const auto scenario =
      sim::readScenario(R"({"steps": [{"do": "state"}, {"do": "advance", "seconds": 1}]})", "");
  std::vector<std::string> kinds;
  const auto death = sim::playInProcess(
      scenario, [&](const sim::Json& entry) { kinds.push_back(entry.at("kind")); });
  EXPECT_EQ(death, std::nullopt);
  EXPECT_EQ(kinds, (std::vector<std::string>{"step", "state", "step"}));
}

}  // namespace
