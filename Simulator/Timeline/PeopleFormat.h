// The timeline as people read it: grouped by step, aligned, in colour on a terminal.

#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "Simulator/Timeline/Timeline.h"

namespace sim {

// An entry in one line, without its time, thread and kind.
std::string describeEntry(const Json& entry);

class PeopleFormat {
 public:
  PeopleFormat(std::ostream& out, bool hasColour) : out_(&out), hasColour_(hasColour) {}

  // `steps` are the scenario's own, so that each can be shown with what it takes.
  void title(const std::string& name, std::vector<Json> steps);
  void entry(const Json& entry);
  // Events, opened links and problems of what was printed since the title; then what was not met.
  void summary(const std::vector<std::string>& unmet);

 private:
  enum class Style { plain, bold, dim, red, green, yellow, blue, magenta, cyan };

  static Style styleOf(const std::string& kind);
  [[nodiscard]] std::string styled(const std::string& text, Style style) const;
  void count(const Json& entry);
  [[nodiscard]] std::string describeStep(const Json& entry) const;

  std::ostream* out_;
  bool hasColour_;
  std::vector<Json> steps_;
  double time_ = -1;
  int events_ = 0;
  int links_ = 0;
  int problems_ = 0;
};

}  // namespace sim
