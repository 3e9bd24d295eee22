#include "Simulator/Scenario/HostReader.h"

#include <algorithm>

#include "Simulator/Network/URLSession.h"
#include "Simulator/ObjectiveC/StandIn.h"
#include "Simulator/XCTest/XCTest.h"
#include "ZibPlatform/ObjectiveC/Class.h"

namespace sim {
namespace {

// The classes that one needs: its superclass, and what its objects forward to.
std::vector<std::string> neededBy(const HostClassDescription& description) {
  return {description.superclass, description.forwardsTo};
}

bool needs(const std::string& name, const std::string& wanted,
           const HostClassDescriptions& classes) {
  const auto found = classes.find(name);
  if (found == classes.end()) return false;
  const auto needed = neededBy(found->second);
  return std::any_of(needed.begin(), needed.end(), [&](const std::string& each) {
    return !each.empty() && (each == wanted || needs(each, wanted, classes));
  });
}

// The classes that a device has before the host's come: the system's own, and those that the module
// and the stand-ins register when the scenario is played.
bool isSystemClass(const std::string& name) {
  static const std::set<std::string_view> registeredLater = [] {
    std::set<std::string_view> names{"ZibMessaging", "ZibSwizzleManager", orderedSetClass};
    for (const auto& standIns :
         {uikit::classNames(), usernotifications::classNames(), firebase::classNames(),
          urlsession::classNames(), xctest::classNames()}) {
      names.insert(standIns.begin(), standIns.end());
    }
    return names;
  }();
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
  if (needs(description.name, description.name, classes)) {
    const bool isSuperclass = needs(description.superclass, description.name, classes) ||
                              description.superclass == description.name;
    node.fail("the class \"" + description.name +
                  (isSuperclass ? "\" is its own superclass" : "\" forwards to itself"),
              isSuperclass ? "another superclass" : "another class");
  }
  if (classes.size() > maximumHostClasses) {
    node.fail("too many classes", std::to_string(maximumHostClasses));
  }
}

std::string readClassName(const Node& node, Reading& /*reading*/) {
  std::string name = node.text();
  if (name.empty() || name.find('\0') != std::string::npos) node.failType("the name of a class");
  return name;
}

// What the fields say together.
void checkClass(const Node& node, const HostClassDescription& description,
                const HostClassDescriptions& classes) {
  for (const auto& [method, ignored] : description.callsSuper) {
    if (description.implements.contains(method) && !description.superclass.empty()) continue;
    node.require("callsSuper")
        .require(nameOf(method))
        .fail(description.superclass.empty() ? "the class has no superclass of the host's"
                                             : "the class does not implement this method",
              "methods that it implements, where it has a \"superclass\"");
  }
  for (const auto& [method, ignored] : description.throws) {
    if (description.implements.contains(method)) continue;
    node.require("throws")
        .require(nameOf(method))
        .fail("the class does not implement this method", "methods that it implements");
  }
  const auto forwarding = node.find("forwarding");
  if (forwarding && description.forwardsTo.empty()) {
    forwarding->fail("there is nothing to forward to", "\"forwarding\" beside \"forwardsTo\"");
  }
  const auto above = classes.find(description.superclass);
  if (description.forwarding == Forwarding::proxy && above != classes.end() &&
      above->second.forwarding != Forwarding::proxy) {
    forwarding->fail("the superclass is an NSObject", "a superclass that is a proxy too, or none");
  }
}

const Record<HostClassDescription>& hostClassRecord();

// The classes that it names are added to those of the reading.
std::string readClass(const Node& node, Reading& reading) {
  const std::size_t errorsBefore = reading.errors.size();
  HostClassDescription description = hostClassRecord().read(node, reading);
  // What is half read would only be found to differ from the same class elsewhere.
  if (reading.errors.size() > errorsBefore) return description.name;
  checkClass(node, description, reading.classes);
  addClass(node, description, reading.classes);
  return description.name;
}

Json referenceToDelegate() { return {{"$ref", "#/$defs/delegate"}}; }

DelegateDescription readDelegate(const Node& node, Reading& reading) {
  using Kind = DelegateDescription::Kind;
  if (!node.hasObject()) return {};
  return {Kind::object, readClass(node, reading)};
}

DelegateDescription readNotificationDelegate(const Node& node, Reading& reading) {
  if (node.value() == "appDelegate") return {DelegateDescription::Kind::appDelegate, {}};
  if (node.value().is_string()) node.failType("an object, null, \"appDelegate\"");
  return readDelegate(node, reading);
}

using MessagingDelegate = HostDescription::MessagingDelegate;

Kind<MessagingDelegate> messagingDelegate() {
  return {[](const Node& node, Reading&) {
            if (node.value() == "released") return MessagingDelegate::released;
            if (!node.value().is_boolean()) node.failType("true, false, \"released\"");
            return node.boolean() ? MessagingDelegate::kept : MessagingDelegate::none;
          },
          [] {
            return Json{{"enum", {true, false, "released"}}, {"default", true}};
          }};
}

Kind<std::optional<bool>> urlDelegate() {
  return {[](const Node& node, Reading&) -> std::optional<bool> {
            if (!node.isNull() && !node.value().is_boolean()) node.failType("null, true, false");
            return node.booleanOrNull();
          },
          kinds::booleanOrNull().schema, kinds::booleanOrNull().write};
}

Record<HostDescription> makeHostRecord() {
  const Kind<SceneDescription> scene = objectOf(sceneRecord<SceneDescription>());
  return Record<HostDescription>()
      .optional("appDelegate", &HostDescription::appDelegate, kinds::delegate(),
                "the application's delegate; left out, one of a class \"HostAppDelegate\" that "
                "implements didRegister, didFail and openURL")
      .optional("notificationDelegate", &HostDescription::notificationDelegate,
                kinds::notificationDelegate(),
                "the notification centre's delegate; \"appDelegate\" for the same object")
      .optional("scenes", &HostDescription::scenes, kinds::listOf(scene),
                "the scenes that are connected at the start")
      .optional("firebase", &HostDescription::firebase, kinds::firebaseOrNull(),
                "Firebase Messaging as it is at the start; null, it is not there")
      .optional("messagingDelegate", &HostDescription::messagingDelegate, messagingDelegate(),
                "the module's delegate; \"released\" is let go before the first step")
      .optional("urlDelegate", &HostDescription::urlDelegate, urlDelegate(),
                "what the host's URL callback answers; null, there is none");
}

Kind<Completes> completes() {
  return {[](const Node& node, Reading&) {
            if (node.value().is_boolean())
              return node.boolean() ? Completes::once : Completes::never;
            return Names<Completes>::rows[node.choice(allNames<Completes>(), "true, false")].value;
          },
          [] {
            return Json{{"enum", {true, false, "twice", "later", "elsewhere"}}, {"default", true}};
          }};
}

Kind<RaisedException> exception() {
  static const auto record =
      Record<RaisedException>()
          .required("name", &RaisedException::name, kinds::text(), "its name")
          .required("reason", &RaisedException::reason, kinds::text(), "its reason");
  return objectOf(record);
}

// Another class of the host's, by its description; null stands for none.
Kind<std::string> otherClass() {
  return {[](const Node& node, Reading& reading) {
            return node.hasObject() ? readClass(node, reading) : std::string();
          },
          schemaOrNull(&referenceToDelegate)};
}

Record<HostClassDescription> makeHostClassRecord() {
  const Kind<std::string> className{
      &readClassName, [] {
        return Json{{"type", "string"}, {"pattern", R"(^[^\u0000]+$)"}};
      }};
  using Description = HostClassDescription;
  return Record<Description>()
      .required("class", &Description::name, className, "the class's name")
      .optional("superclass", &Description::superclass, otherClass(),
                "its superclass; null or left out, NSObject")
      .optional("implements", &Description::implements, kinds::setOf(kinds::oneOf<HostMethod>()),
                "the delegate methods that it has")
      .optional("openURLReturns", &Description::openURLReturns, kinds::boolean(),
                "what the methods that open a URL answer")
      .optional("options", &Description::options, kinds::natural(),
                "the presentation options that willPresent completes with")
      .optional("completes", &Description::completes, completes(),
                "whether and when willPresent and didReceive call their completions")
      .optional("throws", &Description::throws, kinds::mapOf<HostMethod>(exception()),
                "the exceptions that its methods raise once they are recorded")
      .optional("callsSuper", &Description::callsSuper,
                kinds::mapOf<HostMethod>(kinds::oneOf<SuperCall>()),
                "how its methods call the superclass's once they are recorded")
      .optional("forwardsTo", &Description::forwardsTo, otherClass(),
                "the class of an object for which its own answer by forwarding")
      .optional("forwarding", &Description::forwarding, kinds::oneOf<Forwarding>(),
                "by naming that object, by passing messages on, or by that as an NSProxy");
}

HostDescription readHost(const Node& node, Reading& reading) {
  static const Record<HostDescription> record = makeHostRecord();
  if (!node.value().is_object()) node.failType("an object");
  if (!node.find("appDelegate")) {
    HostClassDescription standard;
    standard.name = HostDescription().appDelegate.className;
    standard.implements = {HostMethod::didRegister, HostMethod::didFail, HostMethod::openURL};
    reading.classes.emplace(standard.name, standard);
  }
  HostDescription host = record.read(node, reading);
  (reading.isApplicationLate ? reading.lateScenes : reading.connectedScenes) = host.scenes.size();
  return host;
}

const Record<HostClassDescription>& hostClassRecord() {
  static const Record<HostClassDescription> record = makeHostClassRecord();
  return record;
}

}  // namespace

Json hostClassSchema() {
  Json schema = schemaOf(hostClassRecord().fields());
  const auto needs = [](const char* key) -> Json {
    return {{"required", {key}}, {"properties", {{key, {{"type", "object"}}}}}};
  };
  schema["dependentSchemas"] = {{"forwarding", needs("forwardsTo")}};
  return schema;
}

namespace kinds {

const Kind<HostDescription>& host() {
  static const Kind<HostDescription> kind{&readHost,
                                          [] { return schemaOf(makeHostRecord().fields()); }};
  return kind;
}

const Kind<std::optional<CoreConfig>>& config() {
  static const auto record =
      Record<CoreConfig>().optional("autoSwizzlingEnabled", &CoreConfig::autoSwizzlingEnabled,
                                    boolean(), "whether the module integrates itself");
  static const Kind<std::optional<CoreConfig>> kind = orNull(objectOf(record));
  return kind;
}

const Kind<DelegateDescription>& delegate() {
  static const Kind<DelegateDescription> kind{&readDelegate, schemaOrNull(&referenceToDelegate)};
  return kind;
}

const Kind<DelegateDescription>& notificationDelegate() {
  static const Kind<DelegateDescription> kind{
      &readNotificationDelegate, [] {
        return Json{
            {"anyOf", {referenceToDelegate(), {{"type", "null"}}, {{"const", "appDelegate"}}}}};
      }};
  return kind;
}

const Kind<std::optional<FirebaseDescription>>& firebaseOrNull() {
  static const Kind<std::optional<FirebaseDescription>> kind =
      orNull(objectOf(firebaseRecord<FirebaseDescription>()));
  return kind;
}

}  // namespace kinds
}  // namespace sim
