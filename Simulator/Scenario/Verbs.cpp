#include "Simulator/Scenario/Verbs.h"

#include <algorithm>

#include "Simulator/Foundation/URLText.h"
#include "Simulator/Scenario/Reader.h"
#include "Simulator/Timeline/TextForms.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace sim {
namespace {

constexpr bool optional = false;

// How deep containers are nested; counts no further than the limit, so the recursion ends.
int nesting(const Json& value, int limit) {
  if (!value.is_structured()) return 0;
  if (limit == 0) return 1;
  int deepest = 0;
  for (const Json& element : value) deepest = std::max(deepest, nesting(element, limit - 1));
  return deepest + 1;
}

void checkObject(const Node& node) {
  if (!node.value().is_object()) node.failType("an object");
  if (nesting(node.value(), zib::maximumNesting) > zib::maximumNesting) {
    node.fail("nested too deep", std::to_string(zib::maximumNesting) + " levels");
  }
}

void checkURL(const Node& node) {
  if (!parseURLText(node.text())) node.failType("a URL");
}

void checkIndex(const Node& node, std::size_t count) {
  const std::int64_t index = node.integer();
  if (index < 0 || static_cast<std::uint64_t>(index) >= count) {
    node.failType(count == 0 ? "none, since no scene is connected"
                             : "0 to " + std::to_string(count - 1));
  }
}

struct Context {
  HostClassDescriptions& classes;
  std::size_t connectedScenes;
};

void checkField(const Node& node, FieldType type, const Context& context) {
  switch (type) {
    case FieldType::boolean:
      static_cast<void>(node.boolean());
      return;
    case FieldType::booleanOrNull:
      if (!node.isNull() && !node.value().is_boolean()) node.failType("true, false, null");
      return;
    case FieldType::text:
      static_cast<void>(node.text());
      return;
    case FieldType::textOrNull:
      static_cast<void>(node.textOrNull());
      return;
    case FieldType::seconds:
      static_cast<void>(node.nonNegativeNumber());
      return;
    case FieldType::index:
      checkIndex(node, context.connectedScenes);
      return;
    case FieldType::hex:
      if (!bytesFromHex(node.text())) node.failType("an even number of hexadecimal digits");
      return;
    case FieldType::error:
      if (node.hasObject()) static_cast<void>(readError(node));
      return;
    case FieldType::userInfo:
      checkObject(node);
      return;
    case FieldType::dictionaryOrNull:
      if (node.hasObject()) checkObject(node);
      return;
    case FieldType::url:
      checkURL(node);
      return;
    case FieldType::urls:
      for (const Node& url : node.list()) checkURL(url);
      return;
    case FieldType::delegate:
      static_cast<void>(readDelegate(node, &context.classes));
      return;
    case FieldType::notificationDelegate:
      static_cast<void>(readNotificationDelegate(node, &context.classes));
      return;
    case FieldType::firebase:
      static_cast<void>(readFirebaseOrNull(node, &context.classes));
      return;
    case FieldType::config:
      static_cast<void>(readConfig(node));
      return;
    case FieldType::operation:
      return;
  }
}

std::vector<std::string_view> names(const std::vector<Verb>& verbs) {
  std::vector<std::string_view> result;
  result.reserve(verbs.size());
  for (const Verb& verb : verbs) result.push_back(verb.name);
  return result;
}

void checkFields(const Node& node, const Verb& verb, std::vector<std::string_view> otherKeys,
                 const Context& context) {
  for (const Field& field : verb.fields) otherKeys.push_back(field.name);
  node.objectOf(otherKeys);
  for (const Field& field : verb.fields) {
    const auto member = node.find(field.name);
    if (member) {
      checkField(*member, field.type, context);
    } else if (field.isRequired) {
      static_cast<void>(node.require(field.name));
    }
  }
}

void checkCall(const Node& step, const Context& context) {
  const Verb& operation = operations()[step.require("operation").choice(names(operations()))];
  const auto& fields = operation.fields;
  const bool needsArguments = std::any_of(fields.begin(), fields.end(),
                                          [](const Field& field) { return field.isRequired; });
  const auto arguments = needsArguments ? step.require("arguments") : step.find("arguments");
  if (arguments) checkFields(*arguments, operation, {}, context);
}

std::string readThread(const Node& step) {
  const auto thread = step.find("thread");
  if (!thread) return "main";
  if (thread->text().empty()) thread->failType("a name");
  return thread->text();
}

}  // namespace

const std::vector<Verb>& verbs() {
  static const std::vector<Verb> all{
      {"configure", {}},
      {"registerForPush", {}},
      {"registerForPushSimple", {}},
      {"configurePush",
       {{"endpoint", FieldType::textOrNull, optional},
        {"completion", FieldType::boolean, optional},
        {"firebase", FieldType::firebase, optional}}},
      {"answerAuthorization",
       {{"granted", FieldType::boolean, optional}, {"error", FieldType::error, optional}}},
      {"deviceToken", {{"hex", FieldType::hex}}},
      {"registrationFailure", {{"error", FieldType::error}}},
      {"fcmToken", {{"token", FieldType::textOrNull}}},
      {"present", {{"userInfo", FieldType::userInfo}}},
      {"respond", {{"userInfo", FieldType::userInfo}, {"action", FieldType::text, optional}}},
      {"openURL", {{"url", FieldType::url}, {"options", FieldType::userInfo, optional}}},
      {"sceneOpenURLs", {{"scene", FieldType::index, optional}, {"urls", FieldType::urls}}},
      {"setNotificationDelegate", {{"delegate", FieldType::notificationDelegate}}},
      {"connectScene",
       {{"window", FieldType::boolean, optional}, {"delegate", FieldType::delegate, optional}}},
      {"setFirebase",
       {{"classMethod", FieldType::boolean, optional},
        {"instance", FieldType::boolean, optional},
        {"delegateProperty", FieldType::boolean, optional},
        {"settable", FieldType::boolean, optional},
        {"delegate", FieldType::delegate, optional}}},
      {"releaseMessagingDelegate", {}},
      {"setURLDelegate", {{"value", FieldType::booleanOrNull}}},
      {"setConfig", {{"config", FieldType::config}}},
      {"setSwizzlingEnabled", {{"value", FieldType::boolean}}},
      {"call",
       {{"operation", FieldType::operation}, {"arguments", FieldType::operation, optional}}},
      {"advance", {{"seconds", FieldType::seconds}}},
      {"state", {}},
  };
  return all;
}

const std::vector<Verb>& operations() {
  static const Field userInfo{"userInfo", FieldType::userInfo};
  static const std::vector<Verb> all{
      {"setupAutoSwizzling", {}},
      {"setupAsNotificationDelegate", {}},
      {"ensureFirebaseMessagingDelegate", {}},
      {"didRegisterForRemoteNotifications", {{"hex", FieldType::hex}}},
      {"setPushToken", {{"hex", FieldType::hex}}},
      {"didFailToRegisterForRemoteNotifications", {{"error", FieldType::error}}},
      {"setFCMToken", {{"token", FieldType::text}}},
      {"didReceiveRegistrationToken", {{"token", FieldType::text}}},
      {"willPresent", {userInfo}},
      {"didReceive", {userInfo, {"action", FieldType::text, optional}}},
      {"trackNotificationReceived", {userInfo}},
      {"trackNotificationOpened", {userInfo}},
      {"handleNotificationURL", {userInfo}},
      {"handleURL", {{"url", FieldType::url}, {"source", FieldType::text}}},
      {"createNotificationPayload", {userInfo, {"eventType", FieldType::text}}},
      {"createEventPayload",
       {{"eventName", FieldType::text}, {"properties", FieldType::dictionaryOrNull, optional}}},
  };
  return all;
}

Step readStep(const Node& node, HostClassDescriptions& classes, std::size_t& connectedScenes) {
  if (!node.value().is_object()) node.failType("an object");
  const Verb& verb = verbs()[node.require("do").choice(names(verbs()))];
  const Context context{classes, connectedScenes};
  checkFields(node, verb, {"do", "thread"}, context);
  if (verb.name == "call") checkCall(node, context);
  const bool openFirstScene = verb.name == "sceneOpenURLs" && !node.find("scene");
  if (openFirstScene) checkIndex(Node(Json(0), node.pointer()), connectedScenes);
  if (verb.name == "connectScene") ++connectedScenes;
  return {std::string(verb.name), readThread(node), node.value()};
}

}  // namespace sim
