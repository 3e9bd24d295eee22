#include "Simulator/Scenario/EntryKinds.h"

#include <algorithm>
#include <utility>

#include "Simulator/Scenario/Operations.h"
#include "Simulator/Scenario/Verbs.h"

namespace sim {
namespace {

using NameList = std::vector<std::string_view>;

// {"contains": PART}.
Json schemaOfPart(const Json& part) {
  return {{"type", "object"},
          {"properties", {{"contains", part}}},
          {"required", {"contains"}},
          {"additionalProperties", false}};
}

// Of a text, by a part of it.
Json schemaOfPartOfText() { return schemaOfPart({{"type", "string"}}); }

std::string readPart(const Node& node, Reading& reading) {
  node.checkKeys({"contains"}, reading.errors);
  return node.require("contains").text();
}

// A part that none of the names has could never be met.
void checkPartOfName(const Node& node, const NameList& names, Reading& reading) {
  const std::string part = readPart(node, reading);
  const bool fits = std::any_of(names.begin(), names.end(), [&](std::string_view name) {
    return name.find(part) != std::string_view::npos;
  });
  if (!fits) node.require("contains").failType("a part of one of " + quotedList(names));
}

// Null is what each field can be: it stands for what the platform hands over as none.
Kind<Json> unlessNull(Kind<Json> pattern) {
  pattern.schema = schemaOrNull(std::move(pattern.schema));
  pattern.read = [read = std::move(pattern.read)](const Node& node, Reading& reading) {
    return node.isNull() ? Json() : read(node, reading);
  };
  return pattern;
}

Kind<Json> anything() {
  return {[](const Node& node, Reading&) { return node.value(); }, [] { return Json::object(); }};
}

// A value that is compared whole.
Kind<Json> whole(bool (*isAllowed)(const Node&), const char* allowed, Schema schema) {
  return unlessNull({[isAllowed, allowed](const Node& node, Reading&) -> Json {
                       if (!isAllowed(node)) node.failType(allowed);
                       return node.value();
                     },
                     std::move(schema)});
}

Kind<Json> boolean() {
  return whole([](const Node& node) { return node.value().is_boolean(); }, "true, false, null",
               schemaOfType("boolean"));
}

Kind<Json> integer() {
  return whole([](const Node& node) { return node.isIntegral(); }, "an integer",
               schemaOfType("integer"));
}

Kind<Json> number() {
  return whole([](const Node& node) { return node.value().is_number(); }, "a number",
               schemaOfType("number"));
}

Kind<Json> natural() {
  return whole([](const Node& node) { return node.isIntegral() && node.value() >= 0; },
               "an integer from 0 on",
               [] {
                 return Json{{"type", "integer"}, {"minimum", 0}};
               });
}

// Of an object with keys of the host's choice, each that is expected.
Kind<Json> object() {
  return whole([](const Node& node) { return node.value().is_object(); }, "an object",
               schemaOfType("object"));
}

// A list whole, or {"contains": ELEMENT}.
Kind<Json> list() {
  return unlessNull({[](const Node& node, Reading& reading) -> Json {
                       if (node.value().is_array()) return node.value();
                       if (!node.value().is_object()) node.failType("a list, {\"contains\": …}");
                       node.checkKeys({"contains"}, reading.errors);
                       return node.require("contains").value();
                     },
                     [] {
                       return Json{{"anyOf", {{{"type", "array"}}, schemaOfPart(Json::object())}}};
                     }});
}

Kind<Json> text() {
  return unlessNull({[](const Node& node, Reading& reading) -> Json {
                       if (node.value().is_object()) {
                         static_cast<void>(readPart(node, reading));
                       } else if (!node.value().is_string()) {
                         node.failType("a text, null, {\"contains\": a text}");
                       }
                       return node.value();
                     },
                     [] {
                       return Json{{"anyOf", {{{"type", "string"}}, schemaOfPartOfText()}}};
                     }});
}

Kind<Json> oneOf(const NameList& names) {
  return unlessNull({[names](const Node& node, Reading& reading) -> Json {
                       if (node.value().is_object()) {
                         checkPartOfName(node, names, reading);
                       } else {
                         static_cast<void>(node.choice(names));
                       }
                       return node.value();
                     },
                     [names] {
                       return Json{{"anyOf", {{{"enum", names}}, schemaOfPartOfText()}}};
                     }});
}

Json schemaOfObject(const std::vector<EntryField>& fields) {
  Json properties = Json::object();
  for (const EntryField& field : fields)
    properties[std::string(field.name)] = field.pattern.schema();
  return {{"type", "object"}, {"properties", properties}, {"additionalProperties", false}};
}

// An object that has no other keys than these.
Kind<Json> objectWith(const std::vector<EntryField>& fields) {
  return unlessNull({[fields](const Node& node, Reading& reading) -> Json {
                       NameList names;
                       for (const EntryField& field : fields) names.push_back(field.name);
                       node.checkKeys(names, reading.errors);
                       for (const EntryField& field : fields) {
                         const auto member = node.find(field.name);
                         if (!member) continue;
                         reading.collectErrorOf(
                             [&] { static_cast<void>(field.pattern.read(*member, reading)); });
                       }
                       return node.value();
                     },
                     [fields] { return schemaOfObject(fields); }});
}

Kind<Json> error() {
  return objectWith({{"domain", text()}, {"code", integer()}, {"description", text()}});
}

Kind<Json> event() {
  std::vector<EntryField> fields;
  for (const std::string_view key :
       {"pn_campaign_id", "ma_campaign_id", "node_id", "ma_channel", "user_id", "event_type",
        "club", "environment", "customer_key", "reasons", "campaign_source", "platform_name",
        "click_url", "domain_userid"}) {
    fields.push_back({key, anything()});
  }
  return objectWith(fields);
}

// What the system calls back, by the name of the method that it calls.
const NameList& callbacks() {
  static const NameList names{"didRegister", "didFail",    "openURL", "openURLContexts",
                              "willPresent", "didReceive", "token"};
  return names;
}

// NOLINTNEXTLINE(readability-function-size): a table
std::vector<EntryKind> makeKinds() {
  NameList returning = namesOf(operationRows());
  returning.emplace_back("openURL");
  NameList completing{"willPresent", "didReceive", "configurePush"};
  NameList regretted = callbacks();
  regretted.insert(regretted.end(), {"configurePush", "answerAuthorization", "replaceMethod"});
  std::vector<EntryKind> kinds{
      {"step", {{"index", natural()}, {"do", oneOf(namesOf(verbs()))}}},
      {"log", {{"level", oneOf({"info", "error"})}, {"message", text()}, {"error", error()}}},
      {"event", {{"schema", text()}, {"data", event()}}},
      {"storage",
       {{"operation", oneOf({"savePushPermission", "saveFCMToken"})}, {"value", anything()}}},
      {"core", {{"operation", oneOf({"registerPushToken"})}, {"token", text()}}},
      {"delegate",
       {{"operation",
         oneOf({"zibMessaging(_:didReceiveToken:)", "zibMessaging(_:didReceiveNotification:)",
                "zibMessaging(_:didReceiveNotificationResponse:)",
                "zibMessaging(_:didFailToRegisterWithError:)"})},
        {"token", text()},
        {"userInfo", object()},
        {"action", text()},
        {"error", error()}}},
      {"host",
       {{"class", text()},
        {"receiver", text()},
        {"selector", text()},
        {"token", text()},
        {"error", error()},
        {"url", text()},
        {"urls", list()},
        {"userInfo", object()},
        {"action", text()}}},
      {"urlDelegate", {{"url", text()}, {"handled", boolean()}}},
      {"system",
       {{"operation", oneOf({"requestAuthorization", "setNotificationCategories",
                             "registerForRemoteNotifications", "setNotificationDelegate",
                             "setFirebaseDelegate", "setApplicationDelegate", "openURL"})},
        {"options", anything()},
        {"categories", list()},
        {"class", text()},
        {"url", text()}}},
      {"http",
       {{"method", text()},
        {"url", text()},
        {"headers", object()},
        {"timeout", number()},
        {"cachePolicy", integer()},
        {"hasBody", boolean()}}},
      {"firebaseConfig", {{"config", anything()}}},
      {"completion", {{"of", oneOf(completing)}, {"options", integer()}, {"value", boolean()}}},
      {"return", {{"of", oneOf(returning)}, {"value", anything()}}},
      {"state",
       {{"isPushEnabled", boolean()},
        {"fcmToken", text()},
        {"apnsToken", text()},
        {"isSwizzlingEnabled", boolean()},
        {"savedFirebasePlistPath", text()}}},
      {"file",
       {{"name", text()}, {"format", oneOf({"xml", "binary", "openStep"})}, {"value", anything()}}},
      {"problem",
       {{"code", oneOf({"completionNeverCalled", "completionCalledTwice", "noRequestToAnswer",
                        "methodNotReplaced", "uncaughtException"})},
        {"of", oneOf(regretted)},
        {"message", text()}}},
      {"unanswered", {{"of", oneOf(callbacks())}, {"message", text()}}},
      {"report", {{"rows", list()}}},
  };
  for (EntryKind& kind : kinds) {
    kind.fields.insert(kind.fields.begin(),
                       {{"t", number()}, {"thread", text()}, {"scenario", text()}});
  }
  return kinds;
}

}  // namespace

const std::vector<EntryKind>& entryKinds() {
  static const std::vector<EntryKind> kinds = makeKinds();
  return kinds;
}

Json entryPatternSchema() {
  Json alternatives = Json::array();
  for (const EntryKind& kind : entryKinds()) {
    Json schema = schemaOfObject(kind.fields);
    schema["properties"]["kind"] = {{"anyOf", {{{"const", kind.name}}, schemaOfPartOfText()}}};
    alternatives.push_back(std::move(schema));
  }
  return {{"anyOf", alternatives}};
}

}  // namespace sim
