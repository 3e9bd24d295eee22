#include "Simulator/Timeline/Timeline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Base64.h"
#include "Simulator/Timeline/TextForms.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace sim {
namespace {

struct JsonMaker {
  Json operator()(zib::Null) const { return nullptr; }
  Json operator()(const zib::Bytes& bytes) const { return base64From(bytes); }
  Json operator()(zib::Date date) const { return iso8601(date.secondsSince1970); }
  Json operator()(const zib::Array& array) const {
    Json result = Json::array();
    for (const zib::Value& element : array) result.push_back(jsonFrom(element));
    return result;
  }
  Json operator()(const zib::ValueMap& map) const { return jsonFrom(map); }
  template <class T>
  Json operator()(const T& value) const {
    return value;
  }
};

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

Json jsonFrom(const zib::Value& value) { return value.visit(JsonMaker()); }

Json jsonFrom(const zib::ValueMap& map) {
  Json result = Json::object();
  for (const zib::Member& member : map) result[member.key] = jsonFrom(member.value);
  return result;
}

Json jsonFrom(const zib::Error& error) {
  return {{"domain", error.domain}, {"code", error.code}, {"description", error.description}};
}

Json jsonFromObject(zib::objc::id object) { return jsonFrom(zib::valueFrom(object)); }

zib::Value valueFromJson(const Json& json) {
  switch (json.type()) {
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::number_integer:
      return json.get<std::int64_t>();
    case Json::value_t::number_unsigned:
      return json.get<std::uint64_t>();
    case Json::value_t::number_float:
      return json.get<double>();
    case Json::value_t::string:
      return json.get_ref<const std::string&>();
    case Json::value_t::array: {
      zib::Array array;
      for (const Json& element : json) array.push_back(valueFromJson(element));
      return array;
    }
    case Json::value_t::object: {
      zib::ValueMap map;
      for (const auto& [key, value] : json.items()) map.append(key, valueFromJson(value));
      return map;
    }
    default:
      return zib::Null{};
  }
}

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
