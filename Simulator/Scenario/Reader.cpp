#include "Simulator/Scenario/Reader.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "Simulator/Scenario/NetworkReader.h"
#include "Simulator/Scenario/ScenarioError.h"
#include "Simulator/Scenario/Verbs.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Class.h"

namespace sim {
namespace {

// Whatever follows a scenario's values goes down into them by recursion. A `userInfo` that is as
// deep as the platform takes it still fits into a step or an expectation.
constexpr std::size_t deepestNesting = zib::maximumNesting + 16;

// Refuses what the parser accepts and a scenario must not have: the second of two members of one
// name, which the parser would keep, and values nested without end. Runs before the parser, whose
// own callback takes time with the square of a list's length.
class Checks final : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return beginValue(); }
  bool boolean(bool) override { return beginValue(); }
  bool number_integer(number_integer_t) override { return beginValue(); }
  bool number_unsigned(number_unsigned_t) override { return beginValue(); }
  bool number_float(number_float_t, const string_t&) override { return beginValue(); }
  bool string(string_t&) override { return beginValue(); }
  bool binary(binary_t&) override { return beginValue(); }
  bool start_object(std::size_t) override { return open(true); }
  bool start_array(std::size_t) override { return open(false); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& key) override {
    open_.back().key = key;
    if (open_.back().keys.insert(key).second) return true;
    throw ScenarioError(pointer(open_.size()), "the key stands twice in one object",
                        "each key once");
  }
  // Left to the parser, which says it better.
  bool parse_error(std::size_t, const std::string&, const Json::exception&) override {
    return false;
  }

 private:
  // An object or list whose end has not come yet.
  struct Open {
    bool isObject;
    std::set<std::string> keys;
    std::string key;
    std::size_t begun;
  };

  bool beginValue() {
    if (!open_.empty()) ++open_.back().begun;
    return true;
  }

  bool open(bool isObject) {
    beginValue();
    open_.push_back({isObject, {}, {}, 0});
    if (open_.size() > deepestNesting) throw tooDeep();
    return true;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  [[nodiscard]] ScenarioError tooDeep() const {
    constexpr std::size_t shownLevels = 4;
    return {pointer(shownLevels), "nested too deep",
            std::to_string(deepestNesting) + " levels in a scenario"};
  }

  // Of the value that was begun last, up to a level.
  [[nodiscard]] std::string pointer(std::size_t levels) const {
    std::string pointer;
    for (std::size_t level = 0; level < levels; ++level) {
      const Open& open = open_[level];
      pointer += '/';
      pointer += open.isObject ? escapedForPointer(open.key) : std::to_string(open.begun - 1);
    }
    return pointer;
  }

  std::vector<Open> open_;
};

Json parse(std::string_view text) {
  constexpr std::size_t longestDetail = 200;
  Checks checks;
  Json::sax_parse(text, &checks);
  try {
    return Json::parse(text);
  } catch (const Json::exception& error) {
    const std::string_view message = error.what();
    const std::size_t prefix = message.find("] ");
    const auto detail = prefix == std::string_view::npos ? message : message.substr(prefix + 2);
    const auto shown = zib::firstCharacters(detail, longestDetail);
    throw ScenarioError("", std::string(shown) + (shown.size() < detail.size() ? "…" : ""),
                        "a JSON document");
  }
}

void readVersion(const Node& node, DeviceDescription& device) {
  const std::string text = node.text();
  const std::size_t dot = text.find('.');
  const auto number = [&](std::string_view digits) -> long {
    long value = -1;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
    if (!isWhole || value < 0 || digits.front() == '-') node.failType("\"MAJOR.MINOR\"");
    return value;
  };
  if (dot == std::string::npos || dot + 1 == text.size() || dot == 0) {
    node.failType("\"MAJOR.MINOR\"");
  }
  device.osMajor = number(std::string_view(text).substr(0, dot));
  device.osMinor = number(std::string_view(text).substr(dot + 1));
}

void readAuthorization(const Node& node, DeviceDescription& device) {
  node.objectOf({"granted", "error", "answer"});
  device.authorization = readAnswer(node);
  if (const auto answer = node.find("answer")) {
    device.answersByItself = answer->choice({"auto", "manual"}) == 0;
  }
}

DeviceDescription readDevice(const Node& node) {
  DeviceDescription device;
  node.objectOf(
      {"osVersion", "bundlePath", "application", "authorization", "opensURLs", "documents"});
  if (const auto version = node.find("osVersion")) readVersion(*version, device);
  if (const auto path = node.find("bundlePath")) device.bundlePath = path->text();
  if (const auto application = node.find("application")) {
    device.application = static_cast<uikit::ApplicationPresence>(
        application->choice({"present", "noClass", "noInstance", "noOpenURL"}));
  }
  if (const auto authorization = node.find("authorization")) {
    readAuthorization(*authorization, device);
  }
  device.opensURLs = node.booleanOr("opensURLs", true);
  if (const auto documents = node.find("documents")) {
    device.documents =
        static_cast<Documents>(documents->choice({"writable", "readOnly", "missing"}));
  }
  return device;
}

CoreDescription readCore(const Node& node) {
  CoreDescription core;
  node.objectOf({"config", "pushConfigEndpoint"});
  if (const auto config = node.find("config")) core.config = readConfig(*config);
  if (const auto endpoint = node.find("pushConfigEndpoint")) {
    core.pushConfigEndpoint = endpoint->textOrNull();
  }
  return core;
}

constexpr std::string_view methodNames[] = {
    "didRegister", "didFail", "openURL", "openURLContexts", "willPresent", "didReceive", "token"};

std::set<HostMethod> readMethods(const Node& node) {
  std::set<HostMethod> methods;
  for (const Node& method : node.list()) {
    methods.insert(
        static_cast<HostMethod>(method.choice({std::begin(methodNames), std::end(methodNames)})));
  }
  return methods;
}

bool isCircular(const HostClassDescription& added, const HostClassDescriptions& classes) {
  for (std::string name = added.superclass; !name.empty();) {
    if (name == added.name) return true;
    const auto above = classes.find(name);
    name = above == classes.end() ? std::string() : above->second.superclass;
  }
  return false;
}

// The classes that a device has before the host's come: the system's own, and those that the module
// and its stand-ins register when the scenario is played.
bool isSystemClass(const std::string& name) {
  static const std::set<std::string_view> registeredLater{"UIApplication",
                                                          "UIScene",
                                                          "UIWindowScene",
                                                          "UIOpenURLContext",
                                                          "UNNotification",
                                                          "UNNotificationAction",
                                                          "UNNotificationCategory",
                                                          "UNNotificationContent",
                                                          "UNNotificationRequest",
                                                          "UNNotificationResponse",
                                                          "UNUserNotificationCenter",
                                                          "FIRMessaging",
                                                          "ZibMessaging",
                                                          "ZibSwizzleManager",
                                                          "ZibSimOrderedSet"};
  return registeredLater.contains(name) || zib::Class::named(name.c_str());
}

void addClass(const Node& node, const HostClassDescription& description,
              HostClassDescriptions& classes) {
  const auto [existing, isNew] = classes.emplace(description.name, description);
  if (existing->second != description) {
    node.fail("the class \"" + description.name + "\" is described in two ways",
              "one description, or the same one again");
  }
  if (!isNew) return;
  if (isSystemClass(description.name)) {
    node.require("class").fail("a class of the system is called " + description.name,
                               "another name");
  }
  if (isCircular(description, classes)) {
    node.fail("the class \"" + description.name + "\" is its own superclass", "another superclass");
  }
  if (classes.size() > maximumHostClasses) {
    node.fail("too many classes", std::to_string(maximumHostClasses));
  }
}

std::string readClass(const Node& node, HostClassDescriptions* classes) {
  node.objectOf({"class", "superclass", "implements", "openURLReturns", "options", "completes"});
  HostClassDescription description;
  description.name = node.require("class").text();
  if (description.name.empty() || description.name.find('\0') != std::string::npos) {
    node.require("class").failType("the name of a class");
  }
  if (const auto superclass = node.find("superclass"); superclass && superclass->hasObject()) {
    description.superclass = readClass(*superclass, classes);
  }
  if (const auto methods = node.find("implements")) description.implements = readMethods(*methods);
  description.openURLReturns = node.booleanOr("openURLReturns", true);
  if (const auto options = node.find("options")) {
    if (options->integer() < 0) options->failType("a number of options from 0");
    description.options = static_cast<zib::objc::UInteger>(options->integer());
  }
  description.completes = node.booleanOr("completes", true);
  if (classes != nullptr) addClass(node, description, *classes);
  return description.name;
}

DelegateDescription defaultAppDelegate(HostClassDescriptions& classes) {
  const HostClassDescription description{
      "HostAppDelegate", "", {HostMethod::didRegister, HostMethod::didFail, HostMethod::openURL}};
  classes.emplace(description.name, description);
  return {DelegateDescription::Kind::object, description.name};
}

HostDescription::MessagingDelegate readMessagingDelegate(const Node& node) {
  using Kind = HostDescription::MessagingDelegate;
  if (node.value() == "released") return Kind::released;
  if (!node.value().is_boolean()) node.failType("true, false, \"released\"");
  return node.boolean() ? Kind::kept : Kind::none;
}

HostDescription readHost(const Node& node, HostClassDescriptions& classes) {
  HostDescription host;
  node.objectOf({"appDelegate", "notificationDelegate", "scenes", "firebase", "messagingDelegate",
                 "urlDelegate"});
  const auto appDelegate = node.find("appDelegate");
  host.appDelegate =
      appDelegate ? readDelegate(*appDelegate, &classes) : defaultAppDelegate(classes);
  if (const auto delegate = node.find("notificationDelegate")) {
    host.notificationDelegate = readNotificationDelegate(*delegate, &classes);
  }
  if (const auto scenes = node.find("scenes")) {
    for (const Node& scene : scenes->list()) {
      scene.objectOf({"window", "delegate"});
      host.scenes.push_back(readScene(scene, &classes));
    }
  }
  if (const auto firebase = node.find("firebase")) {
    host.firebase = readFirebaseOrNull(*firebase, &classes);
  }
  if (const auto delegate = node.find("messagingDelegate")) {
    host.messagingDelegate = readMessagingDelegate(*delegate);
  }
  if (const auto delegate = node.find("urlDelegate"); delegate && !delegate->isNull()) {
    if (!delegate->value().is_boolean()) delegate->failType("null, true, false");
    host.urlDelegate = delegate->boolean();
  }
  return host;
}

Json readExpectations(const Node& node) {
  for (const Node& item : node.list()) {
    if (!item.value().is_object()) item.failType("an object");
    if (const auto absent = item.find("absent")) {
      item.objectOf({"absent"});
      if (!absent->value().is_object()) absent->failType("an object");
    }
  }
  return node.value();
}

const Json& emptyObject() {
  static const Json empty = Json::object();
  return empty;
}

Node section(const Node& root, std::string_view name) {
  const auto found = root.find(name);
  return found ? *found : Node(emptyObject(), "/" + std::string(name));
}

}  // namespace

zib::Error readError(const Node& node) {
  node.objectOf({"domain", "code", "description"});
  return {node.require("domain").text(),
          node.require("code").integer(),
          node.require("description").text(),
          {}};
}

std::optional<ZibConfig> readConfig(const Node& node) {
  if (!node.hasObject()) return std::nullopt;
  node.objectOf({"autoSwizzlingEnabled"});
  return ZibConfig{node.booleanOr("autoSwizzlingEnabled", true)};
}

usernotifications::Answer readAnswer(const Node& node) {
  usernotifications::Answer answer;
  answer.granted = node.booleanOr("granted", true);
  if (const auto error = node.find("error"); error && error->hasObject()) {
    answer.error = readError(*error);
  }
  return answer;
}

DelegateDescription readDelegate(const Node& node, HostClassDescriptions* classes) {
  using Kind = DelegateDescription::Kind;
  if (!node.hasObject()) return {};
  return {Kind::object, readClass(node, classes)};
}

DelegateDescription readNotificationDelegate(const Node& node, HostClassDescriptions* classes) {
  if (node.value() == "appDelegate") return {DelegateDescription::Kind::appDelegate, {}};
  if (node.value().is_string()) node.failType("an object, null, \"appDelegate\"");
  return readDelegate(node, classes);
}

SceneDescription readScene(const Node& node, HostClassDescriptions* classes) {
  SceneDescription scene;
  scene.hasWindow = node.booleanOr("window", true);
  if (const auto delegate = node.find("delegate")) {
    scene.delegate = readDelegate(*delegate, classes);
  }
  return scene;
}

FirebaseDescription readFirebase(const Node& node, HostClassDescriptions* classes) {
  FirebaseDescription firebase;
  firebase.pieces.classMethod = node.booleanOr("classMethod", true);
  firebase.pieces.instance = node.booleanOr("instance", true);
  firebase.pieces.delegateProperty = node.booleanOr("delegateProperty", true);
  firebase.pieces.settable = node.booleanOr("settable", true);
  if (const auto delegate = node.find("delegate")) {
    firebase.delegate = readDelegate(*delegate, classes);
  }
  return firebase;
}

std::optional<FirebaseDescription> readFirebaseOrNull(const Node& node,
                                                      HostClassDescriptions* classes) {
  if (!node.hasObject()) return std::nullopt;
  node.objectOf({"classMethod", "instance", "delegateProperty", "settable", "delegate"});
  return readFirebase(node, classes);
}

Scenario readScenario(std::string_view text, const std::string& defaultName,
                      const std::filesystem::path& folder) {
  const Json json = parse(text);
  const Node root(json, "");
  root.objectOf({"name", "device", "core", "host", "network", "steps", "expect"});
  Scenario scenario;
  const auto name = root.find("name");
  scenario.name = name ? name->text() : defaultName;
  scenario.device = readDevice(section(root, "device"));
  scenario.core = readCore(section(root, "core"));
  scenario.host = readHost(section(root, "host"), scenario.hostClasses);
  scenario.network = readNetwork(section(root, "network"), folder);
  std::size_t connectedScenes = scenario.host.scenes.size();
  for (const Node& step : root.require("steps").list()) {
    scenario.steps.push_back(readStep(step, scenario.hostClasses, connectedScenes));
  }
  if (const auto expect = root.find("expect")) scenario.expectations = readExpectations(*expect);
  return scenario;
}

}  // namespace sim
