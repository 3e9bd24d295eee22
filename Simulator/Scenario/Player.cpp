#include "Simulator/Scenario/Player.h"

#include <map>
#include <memory>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Host/RecordingCore.h"
#include "Simulator/Host/RecordingMessagingDelegate.h"
#include "Simulator/Network/URLSession.h"
#include "Simulator/Scenario/CompletionWatch.h"
#include "Simulator/Scenario/Documents.h"
#include "Simulator/Scenario/Fields.h"
#include "Simulator/Scenario/Operations.h"
#include "Simulator/Scenario/Reader.h"
#include "ZibMessaging/Private/TokenText.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibMessaging/ZibSwizzleManager.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;

void addReturn(const std::string& of, const Json& value) {
  Timeline::shared().add("return", {{"of", of}, {"value", value}});
}

// The system calls a delegate only if it responds.
bool responds(id delegate, zib::Selector method) {
  return delegate != nullptr && zib::respondsTo(delegate, method);
}

template <class Result, class... Arguments>
std::optional<Result> callDelegate(id delegate, zib::Selector method, Arguments... arguments) {
  if (!responds(delegate, method)) return std::nullopt;
  return send<Result>(delegate, method, arguments...);
}

template <class... Arguments>
void tellDelegate(id delegate, zib::Selector method, Arguments... arguments) {
  if (responds(delegate, method)) send<void>(delegate, method, arguments...);
}

class Player {
 public:
  void play(const Scenario& scenario, const std::filesystem::path& documents);

 private:
  using PlayStep = void (Player::*)(const Json& fields);

  static const std::map<std::string, PlayStep>& steps();

  void setUpDevice(const DeviceDescription& device);
  static void setUpDocuments(Documents kind, const std::filesystem::path& folder);
  void setUpHost(const HostDescription& host);
  Object makeDelegate(const DelegateDescription& description);
  void applyFirebase(const FirebaseDescription& firebase);
  static void setURLDelegate(std::optional<bool> answer);
  static zib::Application application() { return zib::Application::retained(uikit::application()); }

  void configure(const Json& fields);
  void registerForPush(const Json& fields);
  void registerForPushSimple(const Json& fields);
  void configurePush(const Json& fields);
  void answerAuthorization(const Json& fields);
  void deviceToken(const Json& fields);
  void registrationFailure(const Json& fields);
  void fcmToken(const Json& fields);
  void present(const Json& fields);
  void respond(const Json& fields);
  void openURL(const Json& fields);
  void sceneOpenURLs(const Json& fields);
  void setNotificationDelegate(const Json& fields);
  void connectScene(const Json& fields);
  void setFirebase(const Json& fields);
  void releaseMessagingDelegate(const Json& fields);
  void setURLDelegate(const Json& fields);
  void setConfig(const Json& fields);
  void setSwizzlingEnabled(const Json& fields);
  void call(const Json& fields);
  void state(const Json& fields);

  CompletionWatch completions_;
  std::shared_ptr<RecordingMessagingDelegate> messagingDelegate_;
};

void Player::setUpDevice(const DeviceDescription& device) {
  installFoundation();
  setMainBundlePath(device.bundlePath);
  setSystemVersion(device.osMajor, device.osMinor);
  setClock([] { return inSeconds(Scheduler::shared().now()); });
  urlsession::install();
  uikit::install(device.application, device.opensURLs);
  usernotifications::install(device.answersByItself ? std::optional(device.authorization)
                                                    : std::nullopt);
}

void Player::setUpDocuments(Documents kind, const std::filesystem::path& folder) {
  if (kind == Documents::missing) {
    setDocumentsDirectory(std::nullopt);
    return;
  }
  setDocumentsDirectory(folder.string());
  Timeline::shared().setDocumentsPath(folder.string());
  if (kind == Documents::readOnly) giveUpFilePrivileges();
}

void Player::setUpHost(const HostDescription& host) {
  uikit::setAppDelegate(makeDelegate(host.appDelegate));
  usernotifications::setDelegate(makeDelegate(host.notificationDelegate));
  for (const SceneDescription& scene : host.scenes) {
    uikit::connectScene(scene.hasWindow, makeDelegate(scene.delegate));
  }
  if (host.firebase) applyFirebase(*host.firebase);
  setURLDelegate(host.urlDelegate);
  using MessagingDelegate = HostDescription::MessagingDelegate;
  if (host.messagingDelegate == MessagingDelegate::none) return;
  messagingDelegate_ = std::make_shared<RecordingMessagingDelegate>();
  ZibMessaging::shared().setDelegate(messagingDelegate_);
  if (host.messagingDelegate == MessagingDelegate::released) messagingDelegate_.reset();
}

Object Player::makeDelegate(const DelegateDescription& description) {
  switch (description.kind) {
    case DelegateDescription::Kind::none:
      return {};
    case DelegateDescription::Kind::appDelegate:
      return Object::retained(uikit::appDelegate());
    case DelegateDescription::Kind::object:
      return makeHostObject(description.className);
  }
  return {};
}

void Player::applyFirebase(const FirebaseDescription& firebase) {
  firebase::set(firebase.pieces);
  if (firebase.delegate) firebase::setDelegate(makeDelegate(*firebase.delegate));
}

void Player::setURLDelegate(std::optional<bool> answer) {
  if (!answer) {
    ZibDeepLinkHandler::shared().setURLDelegate({});
    return;
  }
  ZibDeepLinkHandler::shared().setURLDelegate([answer = *answer](const zib::URL& url) {
    Timeline::shared().add("urlDelegate", {{"url", url.absoluteString()}, {"handled", answer}});
    return answer;
  });
}

void Player::configure(const Json& /*fields*/) { ZibMessaging::shared().configure(application()); }

void Player::registerForPush(const Json& /*fields*/) {
  ZibMessaging::shared().registerForPush(application());
}

void Player::registerForPushSimple(const Json& /*fields*/) {
  ZibPushConfig::shared().registerForPushSimple(application());
}

void Player::configurePush(const Json& fields) {
  const Node step(fields, "");
  std::optional<std::string> endpoint;
  if (const auto given = step.find("endpoint")) endpoint = given->textOrNull();
  std::optional<FirebaseDescription> firebase;
  if (const auto given = step.find("firebase")) firebase = readFirebaseOrNull(*given, nullptr);
  const auto handler = [this, firebase](const zib::Dictionary& config) {
    Timeline::shared().add("firebaseConfig", {{"config", jsonFromObject(config.native().raw())}});
    if (firebase) applyFirebase(*firebase);
  };
  ZibPushConfig::Completion completion;
  if (fields.value("completion", true)) {
    completion = [called = completions_.watch("configurePush")](bool isRegistering) {
      called({{"value", isRegistering}});
    };
  }
  ZibPushConfig::shared().configurePush(application(), endpoint, handler, completion);
}

void Player::answerAuthorization(const Json& fields) {
  if (!usernotifications::answerOldestRequest(readAnswer(Node(fields, "")))) {
    Timeline::shared().add("problem", {{"code", "noRequestToAnswer"},
                                       {"of", "answerAuthorization"},
                                       {"message", "no request for permission is waiting"}});
  }
}

void Player::deviceToken(const Json& fields) {
  tellDelegate(uikit::appDelegate(),
               selector<"application:didRegisterForRemoteNotificationsWithDeviceToken:">(),
               uikit::application(), zib::makeData(bytesOf(fields)).raw());
}

void Player::registrationFailure(const Json& fields) {
  const Object error = fields.at("error").is_null() ? Object() : errorOf(fields).nativeError();
  tellDelegate(uikit::appDelegate(),
               selector<"application:didFailToRegisterForRemoteNotificationsWithError:">(),
               uikit::application(), error.raw());
}

void Player::fcmToken(const Json& fields) {
  const Json& token = fields.at("token");
  const Object text = token.is_null() ? Object() : zib::makeString(token.get<std::string>());
  tellDelegate(firebase::delegate(), selector<"messaging:didReceiveRegistrationToken:">(),
               firebase::messaging(), text.raw());
}

void Player::present(const Json& fields) {
  const auto method =
      selector<"userNotificationCenter:willPresentNotification:withCompletionHandler:">();
  const id delegate = usernotifications::delegate();
  if (!responds(delegate, method)) return;
  const auto completion = completions_.makeWithOptions("willPresent");
  send<void>(delegate, method, usernotifications::center(),
             usernotifications::makeNotification(userInfoOf(fields)).raw(), completion.raw());
}

void Player::respond(const Json& fields) {
  const auto method =
      selector<"userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:">();
  const id delegate = usernotifications::delegate();
  if (!responds(delegate, method)) return;
  const auto completion = completions_.make("didReceive");
  send<void>(delegate, method, usernotifications::center(),
             usernotifications::makeResponse(userInfoOf(fields), actionOf(fields)).raw(),
             completion.raw());
}

void Player::openURL(const Json& fields) {
  const Object options = zib::objectFrom(valueFromJson(fields.value("options", Json::object())));
  const auto result = callDelegate<BOOL>(
      uikit::appDelegate(), selector<"application:openURL:options:">(), uikit::application(),
      urlFrom(fields.at("url").get<std::string>()).native(), options.raw());
  if (result) addReturn("openURL", *result != 0);
}

void Player::sceneOpenURLs(const Json& fields) {
  std::vector<Object> urls;
  for (const Json& url : fields.at("urls")) {
    urls.push_back(Object::retained(urlFrom(url.get<std::string>()).native()));
  }
  const id scene = uikit::scene(fields.value("scene", std::size_t{0}));
  tellDelegate(send<id>(scene, selector<"delegate">()), selector<"scene:openURLContexts:">(), scene,
               uikit::makeURLContexts(urls).raw());
}

void Player::setNotificationDelegate(const Json& fields) {
  usernotifications::setDelegate(
      makeDelegate(readNotificationDelegate(Node(fields.at("delegate"), "/delegate"), nullptr)));
}

void Player::connectScene(const Json& fields) {
  const SceneDescription scene = readScene(Node(fields, ""), nullptr);
  uikit::connectScene(scene.hasWindow, makeDelegate(scene.delegate));
}

void Player::setFirebase(const Json& fields) {
  applyFirebase(readFirebase(Node(fields, ""), nullptr));
}

void Player::releaseMessagingDelegate(const Json& /*fields*/) { messagingDelegate_.reset(); }

void Player::setURLDelegate(const Json& fields) {
  const Json& value = fields.at("value");
  setURLDelegate(value.is_null() ? std::nullopt : std::optional(value.get<bool>()));
}

void Player::setConfig(const Json& fields) {
  setCoreConfig(readConfig(Node(fields.at("config"), "/config")));
}

void Player::setSwizzlingEnabled(const Json& fields) {
  ZibSwizzleManager::shared().setSwizzlingEnabled(fields.at("value").get<bool>());
}

void Player::call(const Json& fields) {
  const auto operation = fields.at("operation").get<std::string>();
  if (const auto result = callOperation(operation, fields.value("arguments", Json::object()))) {
    addReturn(operation, *result);
  }
}

void Player::state(const Json& /*fields*/) {
  const ZibMessaging& messaging = ZibMessaging::shared();
  const auto fcmToken = messaging.fcmToken();
  const auto apnsToken = messaging.apnsToken();
  const auto plistPath = ZibPushConfig::shared().savedFirebasePlistPath();
  Timeline::shared().add("state",
                         {{"isPushEnabled", messaging.isPushEnabled()},
                          {"fcmToken", fcmToken ? Json(*fcmToken) : Json()},
                          {"apnsToken", apnsToken ? Json(zib::hexText(*apnsToken)) : Json()},
                          {"isSwizzlingEnabled", ZibSwizzleManager::shared().isSwizzlingEnabled()},
                          {"savedFirebasePlistPath", plistPath ? Json(*plistPath) : Json()}});
}

const std::map<std::string, Player::PlayStep>& Player::steps() {
  static const std::map<std::string, PlayStep> steps{
      {"configure", &Player::configure},
      {"registerForPush", &Player::registerForPush},
      {"registerForPushSimple", &Player::registerForPushSimple},
      {"configurePush", &Player::configurePush},
      {"answerAuthorization", &Player::answerAuthorization},
      {"deviceToken", &Player::deviceToken},
      {"registrationFailure", &Player::registrationFailure},
      {"fcmToken", &Player::fcmToken},
      {"present", &Player::present},
      {"respond", &Player::respond},
      {"openURL", &Player::openURL},
      {"sceneOpenURLs", &Player::sceneOpenURLs},
      {"setNotificationDelegate", &Player::setNotificationDelegate},
      {"connectScene", &Player::connectScene},
      {"setFirebase", &Player::setFirebase},
      {"releaseMessagingDelegate", &Player::releaseMessagingDelegate},
      {"setURLDelegate", &Player::setURLDelegate},
      {"setConfig", &Player::setConfig},
      {"setSwizzlingEnabled", &Player::setSwizzlingEnabled},
      {"call", &Player::call},
      {"state", &Player::state},
  };
  return steps;
}

void Player::play(const Scenario& scenario, const std::filesystem::path& documents) {
  const zib::AutoreleasePool pool;
  setUpDevice(scenario.device);
  setUpDocuments(scenario.device.documents, documents);
  const auto network = std::make_shared<Network>(scenario.network);
  urlsession::setNetwork(network);
  const DocumentsWatch documentsWatch(documents);
  registerHostClasses(scenario.hostClasses);
  installRecordingCore();
  setCoreConfig(scenario.core.config);
  setPushConfigEndpoint(scenario.core.pushConfigEndpoint);
  setUpHost(scenario.host);
  Scheduler& scheduler = Scheduler::shared();
  for (std::size_t index = 0; index < scenario.steps.size(); ++index) {
    const Step& step = scenario.steps[index];
    scheduler.runOn(step.thread, [&] {
      Timeline::shared().add("step", {{"index", index}, {"do", step.verb}});
      if (step.verb != "advance") (this->*steps().at(step.verb))(step.fields);
    });
    if (step.verb == "advance") {
      const double seconds = step.fields.at("seconds").get<double>();
      scheduler.advanceTo(scheduler.now() + inNanoseconds(seconds));
    }
    scheduler.drain();
    documentsWatch.recordWritten();
  }
  completions_.reportMissing();
}

}  // namespace

void play(const Scenario& scenario, const std::filesystem::path& documents) {
  Player().play(scenario, documents);
}

}  // namespace sim
