#include "Simulator/Timeline/EntryKinds.h"

#include <algorithm>

namespace sim {

const std::vector<EntryKind>& entryKinds() {
  static const std::vector<EntryKind> kinds{
      {"step", {"index", "do"}},
      {"log", {"level", "message", "error"}},
      {"event", {"schema", "data"}},
      {"storage", {"operation", "value"}},
      {"core", {"operation", "token"}},
      {"delegate", {"operation", "token", "userInfo", "action", "error"}},
      {"host",
       {"class", "receiver", "selector", "token", "error", "url", "urls", "userInfo", "action"}},
      {"urlDelegate", {"url", "handled"}},
      {"system", {"operation", "options", "categories", "class", "url"}},
      {"http", {"method", "url", "headers", "timeout", "cachePolicy", "hasBody"}},
      {"firebaseConfig", {"config"}},
      {"completion", {"of", "options", "value"}},
      {"return", {"of", "value"}},
      {"state",
       {"isPushEnabled", "fcmToken", "apnsToken", "isSwizzlingEnabled", "savedFirebasePlistPath"}},
      {"file", {"name", "format", "value"}},
      {"problem", {"code", "of", "message"}},
      {"unanswered", {"of", "message"}},
      {"report", {"rows"}},
  };
  return kinds;
}

const std::vector<std::string_view>& textEntryFields() {
  static const std::vector<std::string_view> fields{
      "thread", "scenario", "do",     "level", "message",  "schema",    "operation",
      "token",  "url",      "action", "class", "receiver", "selector",  "method",
      "of",     "name",     "format", "code",  "fcmToken", "apnsToken", "savedFirebasePlistPath"};
  return fields;
}

const std::vector<std::string_view>& commonEntryFields() {
  static const std::vector<std::string_view> fields{"t", "thread", "kind", "scenario"};
  return fields;
}

std::vector<std::string_view> entryFieldsOf(std::string_view kind) {
  std::vector<std::string_view> fields = commonEntryFields();
  for (const EntryKind& each : entryKinds()) {
    if (!kind.empty() && each.name != kind) continue;
    for (const std::string_view field : each.fields) {
      if (std::find(fields.begin(), fields.end(), field) == fields.end()) fields.push_back(field);
    }
  }
  return fields;
}

}  // namespace sim
