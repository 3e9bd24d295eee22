#include "Simulator/Page/TimelineView.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <utility>

#include "Simulator/Scenario/Expectations.h"
#include "Simulator/Timeline/PeopleFormat.h"

namespace sim {
namespace {

constexpr std::array<const char*, 4> lanes{"system", "module", "host", "core"};

// Whose doing an entry is. What is in no list is the module's.
std::string laneOf(const Json& entry) {
  static const std::map<std::string, const char*> lanesOfKinds{
      {"system", "system"},    {"http", "system"},         {"completion", "system"},
      {"file", "system"},      {"host", "host"},           {"delegate", "host"},
      {"urlDelegate", "host"}, {"firebaseConfig", "host"}, {"event", "core"},
      {"storage", "core"},     {"core", "core"},           {"problem", "system"},
      {"unanswered", "host"},
  };
  const auto found = lanesOfKinds.find(entry.at("kind").get<std::string>());
  return found == lanesOfKinds.end() ? "module" : found->second;
}

std::string shownTime(const Json& entry) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.3f s", entry.at("t").get<double>());
  return text.data();
}

std::string shownValue(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// Of an element that a link leads to.
std::string idOf(std::size_t scenario, std::size_t entry) {
  return "entry-" + std::to_string(scenario) + "-" + std::to_string(entry);
}

std::string idOfExpectation(std::size_t scenario, std::size_t expectation) {
  return "expectation-" + std::to_string(scenario) + "-" + std::to_string(expectation);
}

// A scenario as the page shows it.
struct Shown {
  const Outcome& outcome;
  std::size_t scenario;
  std::vector<Judgement> judgements = judge(outcome.expectations, outcome.timeline);
};

void addFields(Markup& markup, const Json& entry) {
  markup.open("dl");
  for (const auto& [key, value] : entry.items()) {
    if (key == "scenario") continue;
    markup.element("dt", key).element("dd", shownValue(value));
  }
  markup.close();
}

Markup viewOfEntry(const Json& entry, const std::string& lane) {
  const std::string kind = entry.at("kind");
  const std::string thread = entry.at("thread");
  Markup markup;
  markup.open("div", {{"class", "entry " + (kind == "problem" ? kind : lane)}});
  markup.open("details").open("summary");
  markup.element("span", thread == "main" ? kind : kind + " on " + thread, {{"class", "kind"}});
  markup.text(" ").element("span", describeEntry(entry)).close();
  addFields(markup, entry);
  return markup;
}

// To the expectations that an entry meets, or comes nearest to.
Markup linksToExpectations(std::size_t entry, const Shown& shown) {
  Markup markup;
  for (std::size_t index = 0; index < shown.judgements.size(); ++index) {
    const auto& [miss, entries] = shown.judgements[index];
    if (std::find(entries.begin(), entries.end(), entry) == entries.end()) continue;
    markup.text(" ").element(
        "a", (miss.empty() ? "meets expectation " : "not expectation ") + std::to_string(index),
        {{"class", miss.empty() ? "expected met" : "expected unmet"},
         {"href", "#" + idOfExpectation(shown.scenario, index)}});
  }
  return markup;
}

void addStepRow(Markup& markup, std::size_t number, const Shown& shown) {
  const auto& [outcome, scenario, judgements] = shown;
  const Json& entry = outcome.timeline[number];
  const auto index = entry.at("index").get<std::size_t>();
  const std::string thread = entry.at("thread");
  markup.open("tr", {{"class", "step"}, {"id", idOf(scenario, number)}});
  markup.element("th", shownTime(entry), {{"class", "time"}, {"scope", "row"}});
  markup.open("th", {{"colspan", "4"}, {"scope", "colgroup"}});
  markup.text(std::to_string(index + 1) + ". " + entry.at("do").get<std::string>());
  if (index < outcome.steps.size()) {
    Json fields = outcome.steps[index];
    for (const char* const known : {"do", "thread"}) fields.erase(known);
    if (!fields.empty()) markup.element("span", "  " + fields.dump(), {{"class", "note"}});
  }
  if (thread != "main") markup.text("  on " + thread);
  markup.add(linksToExpectations(number, shown)).close().close();
}

void addEntryRow(Markup& markup, std::size_t number, const std::string& time, const Shown& shown) {
  const Json& entry = shown.outcome.timeline[number];
  const std::string lane = laneOf(entry);
  markup.open("tr", {{"id", idOf(shown.scenario, number)}});
  markup.element("td", time, {{"class", "time"}});
  for (const char* const each : lanes) {
    markup.open("td");
    if (lane == each) markup.add(viewOfEntry(entry, lane)).add(linksToExpectations(number, shown));
    markup.close();
  }
  markup.close();
}

Markup viewOfLanes(const Shown& shown) {
  const Outcome& outcome = shown.outcome;
  Markup markup;
  markup.open("div", {{"class", "wide"},
                      {"tabindex", "0"},
                      {"role", "region"},
                      {"aria-label", "Timeline of " + outcome.name}});
  markup.open("table", {{"class", "lanes"}}).open("thead").open("tr");
  markup.element("th", "Time", {{"scope", "col"}, {"class", "time"}});
  for (const char* const lane : lanes) {
    markup.element("th", lane, {{"scope", "col"}, {"class", "lane-" + std::string(lane)}});
  }
  markup.close().close().open("tbody");
  std::string timeBefore;
  for (std::size_t index = 0; index < outcome.timeline.size(); ++index) {
    const Json& entry = outcome.timeline[index];
    const std::string time = shownTime(entry);
    const bool isLater = time != std::exchange(timeBefore, time);
    if (entry.at("kind") == "step") {
      addStepRow(markup, index, shown);
    } else {
      addEntryRow(markup, index, isLater ? time : "", shown);
    }
  }
  return markup;
}

// To the entries that met an expectation, or come nearest to it.
void addLinksToEntries(Markup& markup, const Judgement& judgement, const Shown& shown) {
  if (judgement.entries.empty()) return;
  constexpr std::size_t most = 20;
  const std::size_t count = judgement.entries.size();
  markup.open("p", {{"class", "entries"}});
  markup.text(judgement.miss.empty() ? "by " : "see ");
  for (std::size_t index = 0; index < std::min(count, most); ++index) {
    const std::size_t entry = judgement.entries[index];
    const Json& there = shown.outcome.timeline[entry];
    if (index > 0) markup.text(", ");
    markup.element("a", there.at("kind").get<std::string>() + " at " + shownTime(there),
                   {{"href", "#" + idOf(shown.scenario, entry)}});
  }
  if (count > most) markup.text(" and " + std::to_string(count - most) + " more");
  markup.close();
}

Markup viewOfExpectations(const Shown& shown) {
  const auto& [outcome, scenario, judgements] = shown;
  Markup markup;
  markup.open("section").element("h2", "What was expected");
  markup.open("ol", {{"class", "expectations"}, {"start", "0"}});
  for (std::size_t index = 0; index < judgements.size(); ++index) {
    const bool isMet = judgements[index].miss.empty();
    markup.open("li",
                {{"class", isMet ? "met" : "unmet"}, {"id", idOfExpectation(scenario, index)}});
    markup.element("strong", isMet ? "met" : "not met").text(" ");
    if (isMet) markup.element("code", outcome.expectations[index].dump());
    if (!isMet) markup.element("pre", judgements[index].miss);
    addLinksToEntries(markup, judgements[index], shown);
    markup.close();
  }
  markup.close();
  for (const std::string& message : outcome.unmet) {
    if (!message.starts_with("expectation "))
      markup.element("pre", message, {{"class", "failure"}});
  }
  return markup;
}

std::string verdictOn(const Outcome& outcome) {
  if (outcome.death) return "died: " + *outcome.death;
  return outcome.hasPassed() ? "passed" : "failed";
}

Markup viewOf(const Outcome& outcome, std::size_t scenario, bool isAlone) {
  Markup markup;
  markup.open("article", {{"id", "scenario-" + std::to_string(scenario)},
                          {"data-summary", outcome.name + ": " + verdictOn(outcome)}});
  markup.open("header");
  if (!isAlone) markup.element("h2", outcome.name);
  markup.element("p", verdictOn(outcome) + " · " + outcome.file,
                 {{"class", outcome.hasPassed() ? "outcome passed" : "outcome failed"}});
  markup.close();
  const Shown shown{outcome, scenario};
  if (!outcome.expectations.empty() || !outcome.unmet.empty()) {
    markup.add(viewOfExpectations(shown));
  }
  markup.open("section").add(viewOfLanes(shown)).close();
  return markup;
}

Markup contentsOf(const std::vector<Outcome>& outcomes) {
  Markup markup;
  markup.open("nav", {{"aria-label", "Scenarios"}}).open("section");
  markup.element("p", tallyOf(outcomes)).open("ul");
  for (std::size_t index = 0; index < outcomes.size(); ++index) {
    const Outcome& outcome = outcomes[index];
    markup.open("li").element("a", outcome.name, {{"href", "#scenario-" + std::to_string(index)}});
    markup.text(" ").element(
        "span", verdictOn(outcome),
        {{"class", outcome.hasPassed() ? "outcome passed" : "outcome failed"}});
    markup.close();
  }
  return markup;
}

}  // namespace

Markup viewOf(const std::vector<Outcome>& outcomes) {
  Markup markup;
  if (outcomes.size() > 1) markup.add(contentsOf(outcomes));
  for (std::size_t index = 0; index < outcomes.size(); ++index) {
    markup.add(viewOf(outcomes[index], index, outcomes.size() == 1));
  }
  return markup;
}

}  // namespace sim
