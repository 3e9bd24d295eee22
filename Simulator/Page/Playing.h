// Playing a scenario that somebody has entered on the page.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sim {

struct Played {
  // The timeline as a whole document, or what is wrong.
  std::optional<std::string> document;
  std::string problem;
};

// In a process of its own, which may read no file of this computer on the scenario's behalf, and
// which is ended when it takes too long or says too much. Any thread.
Played playForPage(const std::string& program, std::string_view scenario);

}  // namespace sim
