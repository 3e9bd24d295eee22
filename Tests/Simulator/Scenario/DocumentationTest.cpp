// docs/zibsim.md says what zibsim takes: its examples run, and its tables miss nothing.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "Simulator/Network/Sites.h"
#include "Simulator/Scenario/Expectations.h"
#include "Simulator/Scenario/PlayInProcess.h"
#include "Simulator/Scenario/Reader.h"
#include "Simulator/Scenario/Verbs.h"

namespace {

std::vector<std::string> linesOfPage() {
  std::ifstream page(ZIBSIM_DOCUMENTATION);
  EXPECT_TRUE(page) << ZIBSIM_DOCUMENTATION;
  std::vector<std::string> lines;
  for (std::string line; std::getline(page, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> examples() {
  std::vector<std::string> found;
  bool isInside = false;
  for (const std::string& line : linesOfPage()) {
    if (line.starts_with("```")) {
      isInside = line == "```json";
      if (isInside) found.emplace_back();
    } else if (isInside) {
      found.back() += line + '\n';
    }
  }
  return found;
}

std::string quoted(std::string_view name) { return '`' + std::string(name) + '`'; }

// The row of a table whose first cell has the name. A table is known by the first cell of its head.
std::string rowOf(std::string_view table, std::string_view name) {
  const auto hasInFirstCell = [](const std::string& line, std::string_view text) {
    return line.substr(0, line.find(" |")).find(quoted(text)) != std::string::npos;
  };
  bool isInside = false;
  for (const std::string& line : linesOfPage()) {
    if (!line.starts_with('|')) {
      isInside = false;
    } else if (isInside && hasInFirstCell(line, name)) {
      return line;
    } else {
      isInside = isInside || hasInFirstCell(line, table);
    }
  }
  return {};
}

template <class Row>
void expectRows(std::string_view table, const std::vector<Row>& rows) {
  for (const Row& verb : rows) {
    const std::string row = rowOf(table, verb.name);
    EXPECT_NE(row, "") << verb.name;
    const bool isListedElsewhere = row.find("`host.firebase`") != std::string::npos;
    for (const sim::Field& field : verb.fields) {
      EXPECT_TRUE(isListedElsewhere || row.find(quoted(field.name)) != std::string::npos)
          << verb.name << ": " << field.name;
    }
  }
}

TEST(Documentation, ExamplesRunAndMeetTheirExpectations) {
  const auto all = examples();
  EXPECT_EQ(all.size(), 2U);
  for (const std::string& example : all) {
    const sim::Scenario scenario = sim::readScenario(example, "");
    std::vector<sim::Json> timeline;
    EXPECT_EQ(
        sim::playInProcess(scenario, [&](const sim::Json& entry) { timeline.push_back(entry); }),
        std::nullopt);
    EXPECT_EQ(sim::unmetExpectations(scenario.expectations, timeline), std::vector<std::string>());
  }
}

TEST(Documentation, ListsEveryStepWithItsFields) { expectRows("do", sim::verbs()); }

TEST(Documentation, ListsEveryOperationWithItsArguments) {
  expectRows("operation", sim::operationRows());
}

TEST(Documentation, ListsEveryFault) {
  for (const std::string_view fault : sim::allNames<sim::Fault>())
    EXPECT_NE(rowOf("fault", fault), "") << fault;
}

}  // namespace
