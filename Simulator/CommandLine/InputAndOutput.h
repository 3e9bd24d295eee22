// The files that a command reads and writes.

#pragma once

#include <fstream>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

inline constexpr std::string_view standardInput = "-";

// Up to a limit, so that an endless file ends. Throws UsageError; `allowed` says what the file
// could have been.
std::string readInput(const std::string& file, const std::string& allowed);

// A file, or standard output where its name is empty.
class Output {
 public:
  // Throws UsageError where there can be no such file.
  explicit Output(const std::string& file);

  [[nodiscard]] std::ostream& stream() { return *stream_; }
  [[nodiscard]] bool isStandardOutput() const { return !file_.is_open(); }
  // Throws UsageError if not all of it could be written.
  void finish();

 private:
  std::ofstream file_;
  std::ostream* stream_;
};

// Throws UsageError where writing the output would take away one of the others.
void requireApart(const std::string& output, const std::vector<std::string>& others);

// Whether standard output is a terminal on which colours are welcome.
bool wantsColour();

}  // namespace sim
