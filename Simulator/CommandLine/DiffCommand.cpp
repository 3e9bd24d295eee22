#include "Simulator/CommandLine/DiffCommand.h"

#include <algorithm>
#include <iostream>
#include <sstream>

#include "Simulator/CommandLine/InputAndOutput.h"
#include "Simulator/CommandLine/Usage.h"
#include "Simulator/Report/Difference.h"

namespace sim {
namespace {

constexpr const char* allowedRecords =
    "a timeline that zibsim run --format jsonl has written, or - for standard input";

// How deep the containers of a JSON text are nested.
std::size_t depthOf(const std::string& line) {
  std::size_t depth = 0;
  std::size_t deepest = 0;
  bool isInText = false;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const char each = line[at];
    if (isInText && each == '\\') {
      ++at;
    } else if (each == '"') {
      isInText = !isInText;
    } else if (!isInText && (each == '[' || each == '{')) {
      deepest = std::max(deepest, ++depth);
    } else if (!isInText && (each == ']' || each == '}') && depth > 0) {
      --depth;
    }
  }
  return deepest;
}

Json entryFrom(const std::string& line, const std::string& place) {
  const auto fail = [&](const std::string& problem) {
    throw UsageError(place + ": " + problem + "; allowed: " + allowedRecords);
  };
  // More than any entry has, and less than what fills the stack.
  if (depthOf(line) > 4096) fail("the line is nested deeper than 4096 levels");
  Json entry = Json::parse(line, nullptr, false);
  if (entry.is_discarded()) fail("the line is no JSON");
  if (!entry.is_object() || !entry.contains("kind") || !entry["kind"].is_string()) {
    fail("the line is no entry of a timeline");
  }
  return entry;
}

// What happened according to a file, a line each.
std::vector<std::string> meaningsIn(const std::string& file) {
  std::istringstream text(readInput(file, allowedRecords));
  std::vector<std::string> meanings;
  std::size_t number = 0;
  for (std::string line; std::getline(text, line);) {
    ++number;
    if (line.empty()) continue;
    const Json entry = entryFrom(line, file + ": line " + std::to_string(number));
    if (std::string meaning = meaningOf(entry); !meaning.empty()) {
      meanings.push_back(std::move(meaning));
    }
  }
  return meanings;
}

// A few lines around each difference, so that its place can be found.
void print(const std::vector<ComparedLine>& lines, std::ostream& out) {
  constexpr std::size_t around = 2;
  std::size_t shownUpTo = 0;
  for (std::size_t index = 0; index < lines.size(); ++index) {
    if (lines[index].side == Side::both) continue;
    const std::size_t from = index > around ? index - around : 0;
    if (from > shownUpTo) out << "…\n";
    for (std::size_t each = std::max(from, shownUpTo); each < index; ++each) {
      out << "  " << lines[each].text << '\n';
    }
    out << (lines[index].side == Side::first ? "- " : "+ ") << lines[index].text << '\n';
    shownUpTo = index + 1;
    for (std::size_t each = shownUpTo; each < std::min(lines.size(), index + 1 + around); ++each) {
      if (lines[each].side != Side::both) break;
      out << "  " << lines[each].text << '\n';
      shownUpTo = each + 1;
    }
  }
  if (shownUpTo < lines.size()) out << "…\n";
}

}  // namespace

int compareTimelines(const DiffOptions& options) {
  if (options.first == standardInput && options.second == standardInput) {
    throw UsageError("-: (root): standard input is named twice; allowed: once");
  }
  const auto lines = compare(meaningsIn(options.first), meaningsIn(options.second));
  const auto differing = std::count_if(
      lines.begin(), lines.end(), [](const ComparedLine& line) { return line.side != Side::both; });
  if (differing == 0) return allAsExpected;
  Output output({});
  print(lines, output.stream());
  output.finish();
  return expectationNotMet;
}

}  // namespace sim
