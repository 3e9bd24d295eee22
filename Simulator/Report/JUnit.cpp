#include "Simulator/Report/JUnit.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace sim {
namespace {

// XML has no way to write most control characters, escaped or not.
std::string xmlText(std::string_view text) {
  std::string xml;
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (character == '&') {
      xml += "&amp;";
    } else if (character == '<') {
      xml += "&lt;";
    } else if (character == '>') {
      xml += "&gt;";
    } else if (character == '"') {
      xml += "&quot;";
    } else if (character == '\n') {
      xml += "&#10;";
    } else if (code >= 0x20 || character == '\t') {
      xml += character;
    } else {
      xml += "\uFFFD";
    }
  }
  return xml;
}

std::string attribute(std::string_view name, std::string_view value) {
  return " " + std::string(name) + "=\"" + xmlText(value) + "\"";
}

std::string number(std::string_view name, std::size_t value) {
  return attribute(name, std::to_string(value));
}

std::string time(double seconds) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.3f", seconds);
  return attribute("time", text.data());
}

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

std::string caseFrom(const Outcome& outcome) {
  std::string xml = "  <testcase" + attribute("name", outcome.name) +
                    attribute("classname", outcome.file) + attribute("file", outcome.file) +
                    time(outcome.seconds) + ">\n";
  if (outcome.death) {
    xml += "    <error" + attribute("message", "the process died: " + *outcome.death) + ">" +
           xmlText(describeDeath(outcome)) + "</error>\n";
  }
  if (!outcome.unmet.empty()) {
    std::string all;
    for (const std::string& message : outcome.unmet) all += message + "\n";
    xml += "    <failure" + attribute("message", firstLine(outcome.unmet.front())) + ">" +
           xmlText(all) + "</failure>\n";
  }
  return xml + "  </testcase>\n";
}

}  // namespace

std::string junitFrom(const std::vector<Outcome>& outcomes) {
  const auto count = [&](auto predicate) {
    return static_cast<std::size_t>(std::count_if(outcomes.begin(), outcomes.end(), predicate));
  };
  const std::string totals =
      number("tests", outcomes.size()) +
      number("failures", count([](const Outcome& outcome) { return !outcome.unmet.empty(); })) +
      number("errors", count([](const Outcome& outcome) { return outcome.death.has_value(); }));
  std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n <testsuite" +
                    attribute("name", "zibsim") + totals + ">\n";
  for (const Outcome& outcome : outcomes) xml += caseFrom(outcome);
  return xml + " </testsuite>\n</testsuites>\n";
}

}  // namespace sim
