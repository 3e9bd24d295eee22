#include "Simulator/CommandLine/InputAndOutput.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "Simulator/CommandLine/Usage.h"

namespace sim {
namespace {

// More than any scenario or payload that the readers take.
constexpr std::size_t largestInput = std::size_t{65} << 20U;

std::string readUpToLimit(std::istream& stream) {
  std::string text;
  std::string buffer(std::size_t{1} << 16U, '\0');
  while (text.size() <= largestInput) {
    stream.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    const auto count = static_cast<std::size_t>(stream.gcount());
    if (count == 0) break;
    text.append(buffer, 0, count);
  }
  return text;
}

}  // namespace

std::string readInput(const std::string& file, const std::string& allowed) {
  const auto fail = [&](const std::string& problem) {
    throw UsageError(file + ": (root): " + problem + "; allowed: " + allowed);
  };
  if (file != standardInput && std::filesystem::is_directory(file)) {
    fail(std::string("cannot be read: ") + std::strerror(EISDIR));
  }
  std::ifstream stream;
  if (file != standardInput) {
    stream.open(file, std::ios::binary);
    if (!stream) fail(std::string("cannot be read: ") + std::strerror(errno));
  }
  std::string text = readUpToLimit(file == standardInput ? std::cin : stream);
  if (text.size() > largestInput) fail("holds more than 64 MB");
  return text;
}

Output::Output(const std::string& file) : stream_(&std::cout) {
  if (file.empty()) return;
  file_.open(file, std::ios::binary);
  if (!file_) {
    throw UsageError(file + ": cannot be written: " + std::strerror(errno) +
                     "; allowed: a file in a folder that exists");
  }
  stream_ = &file_;
}

void Output::finish() {
  stream_->flush();
  if (!*stream_) {
    throw UsageError("the output cannot be written; allowed: a place with room for it");
  }
}

void requireApart(const std::string& output, const std::vector<std::string>& others) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  // A device takes what is written without taking anything away.
  if (output.empty() || (fs::exists(output, ignored) && !fs::is_regular_file(output, ignored))) {
    return;
  }
  for (const std::string& other : others) {
    if (other.empty() || other == standardInput) continue;
    if (fs::weakly_canonical(output, ignored) == fs::weakly_canonical(other, ignored)) {
      throw UsageError(output + ": would be written over; allowed: a file of its own");
    }
  }
}

bool wantsColour() {
  const char* const noColour = std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe)
  const bool isUnwanted = noColour != nullptr && *noColour != '\0';
  return ::isatty(STDOUT_FILENO) != 0 && !isUnwanted;
}

}  // namespace sim
