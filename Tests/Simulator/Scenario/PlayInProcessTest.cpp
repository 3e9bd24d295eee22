#include "Simulator/Scenario/PlayInProcess.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <map>

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

TEST(PlayInProcessTest, NamesTheSignalThatKilledTheProcess) {
  EXPECT_EQ(deathAfter([] { std::raise(SIGKILL); }), "it was killed by the signal SIGKILL");
}

TEST(PlayInProcessTest, TellsTheStatusOfAProcessThatEndedEarly) {
  EXPECT_EQ(deathAfter([] { ::_exit(7); }), "it ended early with status 7");
}

TEST(PlayInProcessTest, HandsOverTheEntriesInOrder) {
  const auto scenario =
      sim::readScenario(R"({"steps": [{"do": "state"}, {"do": "advance", "seconds": 1}]})", "");
  std::vector<std::string> kinds;
  const auto death = sim::playInProcess(
      scenario, [&](const sim::Json& entry) { kinds.push_back(entry.at("kind")); });
  EXPECT_EQ(death, std::nullopt);
  EXPECT_EQ(kinds, (std::vector<std::string>{"step", "state", "step"}));
}

// Notes what it hears, scenario by scenario.
class Notes : public sim::PlayListener {
 public:
  void entryCame(std::size_t scenario, sim::Json /*entry*/) override { ++entries[scenario]; }
  void ended(std::size_t scenario, const std::optional<sim::Death>& death,
             double /*seconds*/) override {
    deaths[scenario] = death;
  }

  std::map<std::size_t, int> entries;
  std::map<std::size_t, std::optional<sim::Death>> deaths;
};

int processesStarted = 0;

TEST(PlayInProcessTest, PlaysTheOthersWhenOneDies) {
  pthread_atfork(
      nullptr, [] { ++processesStarted; },
      [] {
        if (processesStarted == 1) std::raise(SIGKILL);
      });
  const auto scenario = sim::readScenario(R"({"steps": [{"do": "state"}]})", "unnamed");
  Notes notes;
  sim::playInProcesses({scenario, scenario, scenario}, 2, notes);
  EXPECT_EQ(notes.entries, (std::map<std::size_t, int>{{0, 2}, {2, 2}}));
  ASSERT_EQ(notes.deaths.size(), 3U);
  EXPECT_EQ(notes.deaths[0], std::nullopt);
  EXPECT_EQ(notes.deaths[1], "it was killed by the signal SIGKILL");
  EXPECT_EQ(notes.deaths[2], std::nullopt);
}

}  // namespace
