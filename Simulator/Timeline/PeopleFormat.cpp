#include "Simulator/Timeline/PeopleFormat.h"

#include <array>
#include <cstdio>
#include <map>

#include "Simulator/Json/TextForms.h"

namespace sim {
namespace {

std::string textOf(const Json& value) {
  return oneLine(value.is_string() ? value.get<std::string>() : value.dump());
}

// Payloads are long, and people see them once in the scenario.
std::string shortened(const std::string& text) {
  constexpr std::size_t longest = 72;
  if (text.size() <= longest) return text;
  std::size_t end = longest;
  while ((static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end) + "…";
}

// The fields without those named, and without the scenario that stands in the title already, as
// "name value" pairs.
std::string others(const Json& fields, const std::vector<std::string>& without) {
  std::string text;
  for (const auto& [key, value] : fields.items()) {
    if (key == "scenario") continue;
    if (std::find(without.begin(), without.end(), key) != without.end()) continue;
    const std::string shown = value.is_structured() ? shortened(textOf(value)) : textOf(value);
    text.append(text.empty() ? "" : ", ").append(key).append(" ").append(shown);
  }
  return text;
}

std::string withDetails(const std::string& text, const std::string& details) {
  return details.empty() ? text : text + "  (" + details + ")";
}

std::string describeError(const Json& error) {
  return textOf(error.at("description")) + " [" + textOf(error.at("domain")) + " " +
         error.at("code").dump() + "]";
}

std::string describeLog(const Json& entry) {
  const std::string message = textOf(entry.at("message"));
  return entry.contains("error") ? message + ": " + describeError(entry.at("error")) : message;
}

// The fields that the notification filled; the rest is the same in each event.
std::string describeEvent(const Json& entry) {
  Json filled = Json::object();
  for (const auto& [key, value] : entry.at("data").items()) {
    if (!value.is_null()) filled[key] = value;
  }
  const std::string type = textOf(filled.value("event_type", Json("event")));
  return withDetails(
      type, others(filled, {"event_type", "ma_channel", "campaign_source", "platform_name"}));
}

std::string describeHost(const Json& entry) {
  std::string method = "-[" + textOf(entry.at("class")) + " " + textOf(entry.at("selector")) + "]";
  if (entry.at("class") != entry.at("receiver")) method += " of " + textOf(entry.at("receiver"));
  std::string details =
      others(entry, {"t", "thread", "kind", "class", "receiver", "selector", "error"});
  if (entry.contains("error")) details = describeError(entry.at("error"));
  return withDetails(method, details);
}

std::string describeCategories(const Json& entry) {
  std::string text;
  for (const Json& category : entry.at("categories")) {
    text.append(text.empty() ? "" : "; ").append(textOf(category.at("identifier"))).append(":");
    for (const Json& action : category.at("actions")) {
      text.append(" \"").append(textOf(action.at("title"))).append("\"");
    }
  }
  return text;
}

std::string describeOperation(const Json& entry) {
  const std::string operation = textOf(entry.at("operation"));
  if (operation == "setNotificationCategories") {
    return withDetails(operation, describeCategories(entry));
  }
  if (entry.contains("error")) return operation + "  " + describeError(entry.at("error"));
  if (operation == "openURL") {
    return operation + "  " + textOf(entry.at("url"));
  }
  return withDetails(operation, others(entry, {"t", "thread", "kind", "operation"}));
}

std::string describeURLDelegate(const Json& entry) {
  return textOf(entry.at("url")) + (entry.at("handled") == true ? "  handled" : "  not handled");
}

std::string describeOf(const Json& entry) {
  return withDetails(textOf(entry.at("of")), others(entry, {"t", "thread", "kind", "of"}));
}

std::string describeReturn(const Json& entry) {
  return textOf(entry.at("of")) + " -> " + textOf(entry.at("value"));
}

std::string describeProblem(const Json& entry) {
  return textOf(entry.at("message")) + " [" + textOf(entry.at("code")) + "]";
}

std::string describeUnanswered(const Json& entry) {
  return withDetails(textOf(entry.at("message")), textOf(entry.at("of")));
}

std::string describeRequest(const Json& entry) {
  return textOf(entry.at("method")) + " " + textOf(entry.at("url")) + "  (" +
         others(entry, {"t", "thread", "kind", "method", "url", "cachePolicy", "hasBody"}) + ")";
}

std::string describeFile(const Json& entry) {
  return textOf(entry.at("name")) + " as " + textOf(entry.at("format")) + "  " +
         shortened(textOf(entry.at("value")));
}

std::string describeConfig(const Json& entry) { return shortened(textOf(entry.at("config"))); }

// Of each method what was done with it, and what is odd.
std::string describeReport(const Json& entry) {
  std::string text;
  for (const Json& row : entry.at("rows")) {
    text.append(text.empty() ? "" : "; ").append(textOf(row.at("method"))).append(" ");
    text.append(textOf(row.at("state")));
    if (!row.at("class").is_null()) text.append(" on ").append(textOf(row.at("class")));
    for (const Json& remark : row.at("remarks")) text.append(", ").append(textOf(remark));
  }
  return text;
}

std::string describeRest(const Json& entry) { return others(entry, {"t", "thread", "kind"}); }

std::string padded(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

std::string counted(int count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

std::string describeEntry(const Json& entry) {
  static const std::map<std::string, std::string (*)(const Json&)> describers{
      {"log", &describeLog},
      {"event", &describeEvent},
      {"storage", &describeOperation},
      {"core", &describeOperation},
      {"delegate", &describeOperation},
      {"host", &describeHost},
      {"urlDelegate", &describeURLDelegate},
      {"system", &describeOperation},
      {"completion", &describeOf},
      {"return", &describeReturn},
      {"problem", &describeProblem},
      {"unanswered", &describeUnanswered},
      {"http", &describeRequest},
      {"file", &describeFile},
      {"firebaseConfig", &describeConfig},
      {"report", &describeReport},
  };
  const auto found = describers.find(entry.at("kind").get<std::string>());
  return found == describers.end() ? describeRest(entry) : found->second(entry);
}

PeopleFormat::Style PeopleFormat::styleOf(const std::string& kind) {
  static const std::map<std::string, Style> styles{
      {"log", Style::dim},          {"event", Style::green},       {"storage", Style::blue},
      {"core", Style::blue},        {"delegate", Style::cyan},     {"host", Style::magenta},
      {"urlDelegate", Style::cyan}, {"system", Style::yellow},     {"http", Style::yellow},
      {"problem", Style::red},      {"unanswered", Style::yellow},
  };
  const auto found = styles.find(kind);
  return found == styles.end() ? Style::plain : found->second;
}

std::string PeopleFormat::styled(const std::string& text, Style style) const {
  static constexpr std::array<const char*, 9> codes{"0",  "1",  "2",  "31", "32",
                                                    "33", "34", "35", "36"};
  if (!hasColour_ || style == Style::plain) return text;
  return std::string("\x1b[") + codes.at(static_cast<std::size_t>(style)) + "m" + text + "\x1b[0m";
}

void PeopleFormat::title(const std::string& name, std::vector<Json> steps) {
  *this = PeopleFormat(*out_, hasColour_);
  steps_ = std::move(steps);
  *out_ << styled(oneLine(name), Style::bold) << '\n';
}

std::string PeopleFormat::describeStep(const Json& entry) const {
  const auto index = entry.at("index").get<std::size_t>();
  std::string text = std::to_string(index + 1) + ". " + entry.at("do").get<std::string>();
  if (index >= steps_.size()) return styled(text, Style::bold);
  const Json& step = steps_[index];
  if (step.contains("operation")) text += " " + textOf(step.at("operation"));
  const std::string details = others(step, {"do", "thread", "operation"});
  return styled(text, Style::bold) + (details.empty() ? "" : styled("  " + details, Style::dim));
}

void PeopleFormat::count(const Json& entry) {
  const std::string kind = entry.at("kind");
  if (kind == "event") ++events_;
  if (kind == "problem") ++problems_;
  const bool isOpened = kind == "system" && entry.at("operation") == "openURL";
  const bool isHandled = kind == "urlDelegate" && entry.at("handled") == true;
  if (isOpened || isHandled) ++links_;
}

void PeopleFormat::entry(const Json& entry) {
  constexpr std::size_t timeWidth = 9;
  constexpr std::size_t kindWidth = 16;
  count(entry);
  const std::string kind = entry.at("kind");
  const double time = entry.at("t");
  std::array<char, 32> clock{};
  if (time != time_) std::snprintf(clock.data(), clock.size(), "%7.3f", time);
  time_ = time;
  if (kind == "step") {
    *out_ << '\n' << styled(padded(clock.data(), timeWidth), Style::dim) << describeStep(entry);
  } else {
    *out_ << styled(padded(clock.data(), timeWidth), Style::dim)
          << styled("  " + padded(kind, kindWidth), styleOf(kind))
          << styled(describeEntry(entry), kind == "problem" ? Style::red : Style::plain);
  }
  if (entry.at("thread") != "main") {
    *out_ << styled("  on " + textOf(entry.at("thread")), Style::dim);
  }
  *out_ << '\n';
}

void PeopleFormat::summary(const std::vector<std::string>& unmet) {
  *out_ << '\n'
        << styled(counted(events_, "event", "events") + ", " +
                      counted(links_, "link opened", "links opened") + ", ",
                  Style::bold)
        << styled(counted(problems_, "problem", "problems"),
                  problems_ == 0 ? Style::bold : Style::red)
        << '\n';
  for (const std::string& message : unmet) *out_ << styled(message, Style::red) << '\n';
  *out_ << '\n';
}

}  // namespace sim
