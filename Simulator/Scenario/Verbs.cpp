#include "Simulator/Scenario/Verbs.h"

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Host/OtherLibrary.h"
#include "Simulator/Host/RecordingCore.h"
#include "Simulator/Scenario/DeviceReader.h"
#include "Simulator/Scenario/HostReader.h"
#include "Simulator/Scenario/JsonDocument.h"
#include "Simulator/Scenario/Stage.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/Foundation/URL.h"

namespace sim {
namespace {

using namespace steps;

void addReturn(std::string_view of, const Json& value) {
  Timeline::shared().add("return", {{"of", of}, {"value", value}});
}

zib::URL urlFrom(const std::string& text) { return zib::URL::parse(text).value(); }

void playConfigurePush(Stage& stage, const ConfigurePush& step) {
  const auto configured = [&stage, firebase = step.firebase](const Json& config) {
    Timeline::shared().add("firebaseConfig", {{"config", config}});
    if (firebase) stage.applyFirebase(*firebase);
  };
  std::function<void(bool)> completion;
  if (step.hasCompletion) {
    completion = [called = stage.completions().watch("configurePush")](bool isRegistering) {
      called({{"value", isRegistering}});
    };
  }
  Module::configurePush(step.endpoint, configured, completion);
}

void playAnswerAuthorization(Stage& /*stage*/, const AnswerAuthorization& step) {
  if (usernotifications::answerOldestRequest(step)) return;
  Timeline::shared().add("problem", {{"code", "noRequestToAnswer"},
                                     {"of", "answerAuthorization"},
                                     {"message", "no request for permission is waiting"}});
}

// The system calls a delegate back. `deliver` says whether there was one that responds.
void callBack(const char* of, std::function<bool()> deliver) {
  Stage::callBack(of, [of, deliver = std::move(deliver)] {
    if (deliver()) return;
    Timeline::shared().add("unanswered", {{"of", of}, {"message", "no delegate answered"}});
  });
}

void playPresent(Stage& stage, const Present& step) {
  callBack("willPresent", [&stage, step] {
    return usernotifications::present(
        step.userInfo, [&] { return stage.completions().makeWithOptions("willPresent"); });
  });
}

void playRespond(Stage& stage, const Respond& step) {
  callBack("didReceive", [&stage, step] {
    return usernotifications::respond(step.userInfo, step.action,
                                      [&] { return stage.completions().make("didReceive"); });
  });
}

void playOpenURL(Stage& /*stage*/, const OpenURL& step) {
  callBack("openURL", [step] {
    const auto result = uikit::deliverURL(urlFrom(step.url), step.options);
    if (result) addReturn("openURL", *result);
    return result.has_value();
  });
}

void playSceneOpenURLs(Stage& /*stage*/, const SceneOpenURLs& step) {
  callBack("openURLContexts", [step] {
    std::vector<zib::URL> urls;
    for (const std::string& url : step.urls) urls.push_back(urlFrom(url));
    return uikit::deliverURLContexts(step.scene, urls);
  });
}

void playCall(Stage& /*stage*/, const Call& step) {
  if (const auto result = step.operation->play(step.arguments)) {
    addReturn(step.operation->name, *result);
  }
}

void playReplaceMethod(Stage& /*stage*/, const ReplaceMethod& step) {
  if (replaceByOtherLibrary(step.className, step.method)) return;
  Timeline::shared().add(
      "problem", {{"code", "methodNotReplaced"},
                  {"of", "replaceMethod"},
                  {"message", "there is no method " + std::string(nameOf(step.method)) + " of " +
                                  step.className + " to replace, or it was replaced before"}});
}

// One that was described up to here.
const Kind<std::string>& hostClass() {
  static const Kind<std::string> kind{[](const Node& node, Reading& reading) {
                                        std::string name = node.text();
                                        if (reading.classes.contains(name)) return name;
                                        node.fail("no class of the host's is \"" + name + "\"",
                                                  "a class that is described before");
                                      },
                                      schemaOfType("string")};
  return kind;
}

void checkScene(const Node& node, std::int64_t index, std::size_t count) {
  if (index >= 0 && static_cast<std::uint64_t>(index) < count) return;
  node.fail("got " + std::to_string(index),
            count == 0 ? "none, since no scene is connected" : "0 to " + std::to_string(count - 1));
}

const Kind<std::size_t>& connectedScene() {
  static const Kind<std::size_t> kind{[](const Node& node, Reading& reading) {
                                        checkScene(node, node.integer(), reading.connectedScenes);
                                        return static_cast<std::size_t>(node.integer());
                                      },
                                      [] {
                                        return Json{{"type", "integer"}, {"minimum", 0}};
                                      },
                                      [](const std::size_t& index) { return Json(index); }};
  return kind;
}

// A push payload as it stands in a file.
zib::ValueMap readPayloadFile(const Node& name, Reading& reading) {
  const std::string file = readNamedFile(name, reading.folder);
  try {
    Json payload = parseDocument(textOfDocument(file));
    removeTargetBundle(payload);
    return kinds::payload().read(Node(payload, ""), reading);
  } catch (const ScenarioError& error) {
    name.fail("no payload: " + std::string(error.what()), "a file with a JSON object");
  }
}

template <class T>
Record<T> payloadRecord() {
  static const Kind<zib::ValueMap> file{&readPayloadFile, schemaOfType("string")};
  return Record<T>()
      .optional("userInfo", &T::userInfo, kinds::payload(), "its payload")
      .optional("userInfoFile", &T::userInfo, file,
                "a .json or .apns file with its payload, named from the scenario's folder on");
}

void checkPayload(const Node& step) {
  const auto file = step.find("userInfoFile");
  if (step.find("userInfo")) {
    if (file) file->fail("a second payload", "one of \"userInfo\", \"userInfoFile\"");
  } else if (!file) {
    step.fail("the key \"userInfo\" is missing, and there is no \"userInfoFile\"",
              "one of \"userInfo\", \"userInfoFile\"");
  }
}

// The operation's own fields stand below "arguments".
void readArguments(const Node& step, Reading& reading, Call& call) {
  const auto& fields = call.operation->fields;
  const bool needsArguments = std::any_of(fields.begin(), fields.end(),
                                          [](const Field& field) { return field.isRequired; });
  const auto given = needsArguments ? step.require("arguments") : step.find("arguments");
  static const Json none = Json::object();
  const Node arguments = given.value_or(Node(none, step.pointer() + "/arguments"));
  call.arguments = call.operation->read(arguments, reading, {});
}

// NOLINTNEXTLINE(readability-function-size): a table
std::vector<Verb> makeVerbs() {
  return {
      {"configure", "the host configures the module", Record<Configure>(),
       [](Stage&, const Configure&) { Module::configure(); }},
      {"registerForPush", "the host asks for push", Record<RegisterForPush>(),
       [](Stage&, const RegisterForPush&) { Module::registerForPush(); }},
      {"registerForPushSimple", "the same through the push configuration",
       Record<RegisterForPushSimple>(),
       [](Stage&, const RegisterForPushSimple&) { Module::registerForPushSimple(); }},
      {"configurePush", "the host asks for push as a remote configuration says",
       Record<ConfigurePush>()
           .optional("endpoint", &ConfigurePush::endpoint, kinds::textOrNull(),
                     "where the configuration is; left out, the core's")
           .optional("completion", &ConfigurePush::hasCompletion, kinds::boolean(),
                     "whether the host gives a completion")
           .optional("firebase", &ConfigurePush::firebase, kinds::firebaseOrNull(),
                     "how the host's handler starts Firebase"),
       &playConfigurePush},
      {"answerAuthorization", "the user answers the oldest pending request",
       answerFields<AnswerAuthorization>(), &playAnswerAuthorization},
      {"deviceToken", "the system hands the application delegate its device token",
       Record<DeviceToken>().required("hex", &DeviceToken::token, kinds::hex(), "its bytes"),
       [](Stage&, const DeviceToken& step) {
         callBack("didRegister", [step] { return uikit::deliverDeviceToken(step.token); });
       }},
      {"registrationFailure", "the system tells the application delegate that there is no token",
       Record<RegistrationFailure>().required("error", &RegistrationFailure::error, kinds::error(),
                                              "why"),
       [](Stage&, const RegistrationFailure& step) {
         callBack("didFail", [step] { return uikit::deliverRegistrationFailure(step.error); });
       }},
      {"fcmToken", "Firebase hands its delegate a registration token",
       Record<FCMToken>().required("token", &FCMToken::token, kinds::textOrNull(),
                                   "the token, or null"),
       [](Stage&, const FCMToken& step) {
         callBack("token", [step] { return firebase::deliverToken(step.token); });
       }},
      {"present", "a notification arrives while the app is in the foreground",
       payloadRecord<Present>(), &playPresent},
      {"respond", "the user acts on a notification",
       payloadRecord<Respond>().optional("action", &Respond::action, kinds::text(),
                                         "the action's identifier"),
       &playRespond},
      {"openURL", "the system opens a URL in the app",
       Record<OpenURL>()
           .required("url", &OpenURL::url, kinds::url(), "the URL")
           .optional("options", &OpenURL::options, kinds::payload(), "the options"),
       &playOpenURL},
      {"sceneOpenURLs", "the system opens URLs in a scene",
       Record<SceneOpenURLs>()
           .optional("scene", &SceneOpenURLs::scene, connectedScene(), "the scene's index")
           .required("urls", &SceneOpenURLs::urls, kinds::listOf(kinds::url()), "the URLs"),
       &playSceneOpenURLs},
      {"setNotificationDelegate", "the host sets the notification centre's delegate",
       Record<SetNotificationDelegate>().required("delegate", &SetNotificationDelegate::delegate,
                                                  kinds::notificationDelegate(), "the delegate"),
       [](Stage& stage, const SetNotificationDelegate& step) {
         usernotifications::setDelegate(stage.makeDelegate(step.delegate));
       }},
      {"connectScene", "a scene connects", sceneRecord<ConnectScene>(),
       [](Stage& stage, const ConnectScene& step) { stage.connectScene(step); }},
      {"setFirebase", "Firebase appears, or changes", firebaseRecord<SetFirebase>(),
       [](Stage& stage, const SetFirebase& step) { stage.applyFirebase(step); }},
      {"releaseMessagingDelegate", "the host lets its messaging delegate go",
       Record<ReleaseMessagingDelegate>(),
       [](Stage& stage, const ReleaseMessagingDelegate&) { stage.module().letDelegateGo(); }},
      {"setURLDelegate", "the host sets its URL callback, or takes it away",
       Record<SetURLDelegate>().required("value", &SetURLDelegate::answer, kinds::booleanOrNull(),
                                         "what it answers; null, there is none"),
       [](Stage&, const SetURLDelegate& step) { Module::setURLDelegate(step.answer); }},
      {"setConfig", "the core's configuration changes",
       Record<SetConfig>().required("config", &SetConfig::config, kinds::config(),
                                    "the configuration, or null"),
       [](Stage&, const SetConfig& step) { setCoreConfig(step.config); }},
      {"setSwizzlingEnabled", "the host switches automatic integration",
       Record<SetSwizzlingEnabled>().required("value", &SetSwizzlingEnabled::isEnabled,
                                              kinds::boolean(), "whether it is on"),
       [](Stage&, const SetSwizzlingEnabled& step) {
         Module::setSwizzlingEnabled(step.isEnabled);
       }},
      {"call", "the host calls a public operation of the module",
       Record<Call>()
           .custom({"operation", "its name", true,
                    [] {
                      return Json{{"enum", namesOf(operationRows())}};
                    }},
                   [](const Node& node, Reading&, Call& call) {
                     call.operation = &operationRows()[node.choice(namesOf(operationRows()))];
                   })
           .custom({"arguments", "what it takes", false, schemaOfType("object")},
                   [](const Node&, Reading&, Call&) {}),
       &playCall},
      {"replaceMethod", "another library puts itself before a method of one of the host's classes",
       Record<ReplaceMethod>()
           .required("class", &ReplaceMethod::className, hostClass(), "the class")
           .required("method", &ReplaceMethod::method, kinds::oneOf<HostMethod>(), "the method"),
       &playReplaceMethod},
      {"finishLaunching",
       "an application that is late appears; the application says that it has launched",
       Record<FinishLaunching>(),
       [](Stage& stage, const FinishLaunching&) { stage.finishLaunching(); }},
      {"busy", "the main thread is busy: what falls due meanwhile is late",
       Record<Busy>().required("seconds", &Busy::seconds, kinds::seconds(), "how long"),
       [](Stage&, const Busy& step) { Scheduler::shared().passWithoutWork(step.seconds); }},
      {"advance", "virtual time passes",
       Record<Advance>().required("seconds", &Advance::seconds, kinds::seconds(), "how much"),
       [](Stage& stage, const Advance& step) { stage.passTimeAfterStep(step.seconds); }},
      {"state", "shows the module's state", Record<State>(),
       [](Stage&, const State&) { Timeline::shared().add("state", Module::state()); }},
      {"report", "shows who stands between the system and the host's delegates", Record<Report>(),
       [](Stage&, const Report&) { Timeline::shared().add("report", Module::report()); }},
  };
}

std::string readThread(const Node& step) {
  const auto thread = step.find("thread");
  if (!thread) return "main";
  if (thread->text().empty()) thread->failType("a name");
  return thread->text();
}

// What a step needs of the steps before it, and changes for those that come.
void checkOrder(const Node& node, const Action& action, Reading& reading) {
  if (std::holds_alternative<SceneOpenURLs>(action) && !node.find("scene")) {
    checkScene(node, 0, reading.connectedScenes);
  }
  if (std::holds_alternative<ConnectScene>(action)) ++reading.connectedScenes;
  if (std::holds_alternative<FinishLaunching>(action)) {
    reading.connectedScenes += std::exchange(reading.lateScenes, 0);
  }
  if (std::holds_alternative<Present>(action) || std::holds_alternative<Respond>(action)) {
    checkPayload(node);
  }
}

Step readStep(const Node& node, Reading& reading) {
  if (!node.value().is_object()) node.failType("an object");
  const Verb& verb = verbs()[node.require("do").choice(namesOf(verbs()))];
  Step step{&verb, "main", verb.read(node, reading, {"do", "thread"}), node.value()};
  if (auto* const call = std::get_if<Call>(&step.action); call != nullptr && call->operation) {
    readArguments(node, reading, *call);
  }
  reading.collectErrorOf([&] { step.thread = readThread(node); });
  checkOrder(node, step.action, reading);
  return step;
}

Json nameSchema(std::string_view name, std::string_view meaning) {
  return {{"const", name}, {"description", meaning}};
}

// Of a step, or of one operation of `call`.
Json stepSchema(const Verb& verb) {
  Json schema = schemaOf(verb.fields);
  schema["description"] = verb.meaning;
  schema["properties"]["do"] = nameSchema(verb.name, verb.meaning);
  schema["properties"]["thread"] = {{"type", "string"},
                                    {"minLength", 1},
                                    {"default", "main"},
                                    {"description", "the thread that it runs on"}};
  schema["required"].push_back("do");
  if (schema["properties"].contains("userInfoFile")) {
    schema["oneOf"] = {{{"required", {"userInfo"}}}, {{"required", {"userInfoFile"}}}};
  }
  return schema;
}

void addCallSchemas(const Verb& verb, Json& schemas) {
  for (const OperationRow& operation : operationRows()) {
    Json schema = stepSchema(verb);
    schema["properties"]["operation"] = nameSchema(operation.name, operation.meaning);
    schema["properties"]["arguments"] = schemaOf(operation.fields);
    if (schema["properties"]["arguments"].contains("required")) {
      schema["required"].push_back("arguments");
    }
    schemas.push_back(std::move(schema));
  }
}

Json schemaOfSteps() {
  Json schemas = Json::array();
  for (const Verb& verb : verbs()) {
    if (verb.name == "call") {
      addCallSchemas(verb, schemas);
    } else {
      schemas.push_back(stepSchema(verb));
    }
  }
  return {{"oneOf", schemas}};
}

}  // namespace

const std::vector<Verb>& verbs() {
  static const std::vector<Verb> rows = makeVerbs();
  return rows;
}

const Kind<Step>& kinds::step() {
  static const Kind<Step> kind{&readStep, &schemaOfSteps};
  return kind;
}

}  // namespace sim
