#include "Simulator/Timeline/Timeline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "Simulator/Dispatch/Scheduler.h"

namespace sim {
namespace {

double roundedSeconds(Nanoseconds time) {
  constexpr double nanosecondsPerMillisecond = 1e6;
  constexpr double millisecondsPerSecond = 1e3;
  return std::round(static_cast<double>(time) / nanosecondsPerMillisecond) / millisecondsPerSecond;
}

// Legal inside a JSON text, but many readers of lines take them for the end of one.
std::string withLineSeparatorsEscaped(std::string line) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 3> escapes{
      {{"\u0085", "\\u0085"}, {"\u2028", "\\u2028"}, {"\u2029", "\\u2029"}}};
  for (const auto& [separator, escape] : escapes) {
    for (std::size_t at = line.find(separator); at != std::string::npos;
         at = line.find(separator, at + escape.size())) {
      line.replace(at, separator.size(), escape);
    }
  }
  return line;
}

}  // namespace

std::string lineFrom(const Json& entry) {
  std::string line = "{";
  const auto append = [&](const std::string& key, const Json& value) {
    if (line.size() > 1) line += ',';
    line += Json(key).dump() + ':' + value.dump();
  };
  constexpr std::array first{"t", "thread", "kind"};
  for (const char* key : first) append(key, entry.at(key));
  for (const auto& [key, value] : entry.items()) {
    if (std::find(first.begin(), first.end(), key) == first.end()) append(key, value);
  }
  return withLineSeparatorsEscaped(std::move(line) + '}');
}

Timeline& Timeline::shared() {
  static Timeline timeline;
  return timeline;
}

void Timeline::setSink(Sink sink) {
  const std::lock_guard lock(mutex_);
  sink_ = std::move(sink);
}

void Timeline::setDocumentsPath(std::string path) {
  const std::lock_guard lock(mutex_);
  documentsPath_ = std::move(path);
}

void Timeline::add(std::string_view kind, const Json& fields) {
  Json entry = {{"t", roundedSeconds(Scheduler::shared().now())},
                {"thread", currentThreadName()},
                {"kind", kind}};
  entry.update(fields);
  const std::lock_guard lock(mutex_);
  if (!documentsPath_.empty()) hideDocumentsPath(entry);
  if (sink_) sink_(entry);
}

void Timeline::hideDocumentsPath(Json& value) const {
  if (value.is_structured()) {
    for (Json& element : value) hideDocumentsPath(element);
  } else if (value.is_string()) {
    auto& text = value.get_ref<std::string&>();
    for (std::size_t at = text.find(documentsPath_); at != std::string::npos;
         at = text.find(documentsPath_, at)) {
      text.replace(at, documentsPath_.size(), "$DOCUMENTS");
    }
  }
}

}  // namespace sim
