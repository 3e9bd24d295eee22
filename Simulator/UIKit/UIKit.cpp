#include "Simulator/UIKit/UIKit.h"

#include <array>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/Json/Values.h"
#include "Simulator/ObjectiveC/DelegateCall.h"
#include "Simulator/ObjectiveC/StandIn.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/UIKit/DelegateMessages.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim::uikit {
namespace {

using zib::Block;
using zib::BlockLayout;
using zib::Class;
using zib::classNamed;
using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;

constexpr const char* applicationClass = "UIApplication";
constexpr const char* sceneClass = "UIScene";
constexpr const char* windowSceneClass = "UIWindowScene";
constexpr const char* contextClass = "UIOpenURLContext";

constexpr const char* optionalMethods[] = {didRegister.data(), didFailToRegister.data(),
                                           openURLWithOptions.data(), openURLFromSource.data(),
                                           handleOpenURL.data()};

struct ApplicationState {
  bool opensURLs = true;
  bool hasLaunched = true;
  AsksDelegate asksDelegate = AsksDelegate::eachTime;
  Object application;
  // Not retained, as on the phone.
  id delegate = nullptr;
  // Which of the optional methods the delegate had when it was set.
  std::array<bool, std::size(optionalMethods)> answers{};
  // What the host keeps alive.
  Object hostsDelegate;
  std::vector<Object> scenes;
};

ApplicationState& state() {
  static ApplicationState state;
  return state;
}

void record(const char* operation, Json fields = Json::object()) {
  fields["operation"] = operation;
  Timeline::shared().add("system", fields);
}

id sharedApplication(id, SEL) { return state().application.raw(); }
id delegate(id, SEL) { return state().delegate; }

void useDelegate(id newDelegate) {
  state().delegate = newDelegate;
  for (std::size_t index = 0; index < std::size(optionalMethods); ++index) {
    state().answers.at(index) = responds(newDelegate, zib::Selector(optionalMethods[index]));
  }
}

void recordAndSetDelegate(id, SEL, id newDelegate) {
  record("setApplicationDelegate",
         {{"class", newDelegate == nullptr ? Json() : Json(classNameOf(newDelegate))}});
  useDelegate(newDelegate);
}

// Whether the application calls that method of its delegate.
bool calls(zib::Selector method) {
  if (state().asksDelegate == AsksDelegate::eachTime) return responds(appDelegate(), method);
  for (std::size_t index = 0; index < std::size(optionalMethods); ++index) {
    if (method == zib::Selector(optionalMethods[index])) return state().answers.at(index);
  }
  return false;
}

void post(const char* notification, id object) {
  const id center = zib::sendToClass<"NSNotificationCenter", "defaultCenter">();
  send<void>(center, selector<"postNotificationName:object:">(),
             zib::makeString(notification).raw(), object);
}

id connectedScenes(id, SEL) { return autoreleased(makeOrderedSet(state().scenes)); }

void registerForRemoteNotifications(id, SEL) { record("registerForRemoteNotifications"); }

void openURL(id, SEL, id url, id options, BlockLayout* completion) {
  using Completion = Block<void(BOOL)>;
  record("openURL", {{"url", zib::utf8From(send<id>(url, selector<"absoluteString">()))},
                     {"options", jsonFromObject(options)}});
  Scheduler::shared().submitNow(
      [kept = Completion::copied(completion)] { kept(static_cast<BOOL>(state().opensURLs)); });
}

void makeApplication() { state().application = zib::create(Class::named(applicationClass)); }

void registerApplication(ApplicationPresence presence) {
  zib::ClassBuilder builder(applicationClass, classNamed<"NSObject">());
  builder.classMethod("sharedApplication", &sharedApplication)
      .method("delegate", &delegate)
      .method("setDelegate:", &recordAndSetDelegate)
      .method("connectedScenes", &connectedScenes)
      .method("registerForRemoteNotifications", &registerForRemoteNotifications);
  if (presence != ApplicationPresence::noOpenURL) {
    builder.method("openURL:options:completionHandler:", &openURL);
  }
  builder.registerClass();
  using enum ApplicationPresence;
  if (presence != noInstance && presence != late) makeApplication();
}

}  // namespace

std::vector<std::string_view> classNames() {
  return {applicationClass, sceneClass, windowSceneClass, contextClass};
}

void install(ApplicationPresence presence, bool opensURLs, AsksDelegate asksDelegate) {
  state().opensURLs = opensURLs;
  state().asksDelegate = asksDelegate;
  state().hasLaunched = presence != ApplicationPresence::late;
  if (presence != ApplicationPresence::noClass) registerApplication(presence);
  const Class scene = registerStandIn(sceneClass, classNamed<"NSObject">(), {{"delegate"}});
  zib::ClassBuilder(windowSceneClass, scene).registerClass();
  registerStandIn(contextClass, classNamed<"NSObject">(), {{"URL"}});
}

id application() { return state().application.raw(); }

void finishLaunching() {
  if (!state().hasLaunched) {
    state().hasLaunched = true;
    makeApplication();
    useDelegate(state().hostsDelegate.raw());
  }
  post("UIApplicationDidFinishLaunchingNotification", application());
}

void setAppDelegate(Object delegate) {
  state().hostsDelegate = std::move(delegate);
  if (state().hasLaunched) useDelegate(state().hostsDelegate.raw());
}

id appDelegate() { return state().delegate; }

void connectScene(bool hasWindow, const Object& delegate) {
  Object scene = makeStandIn(Class::named(hasWindow ? windowSceneClass : sceneClass));
  setProperty(scene.raw(), "delegate", delegate);
  state().scenes.push_back(scene);
  post("UISceneWillConnectNotification", scene.raw());
}

id scene(std::size_t index) { return state().scenes.at(index).raw(); }

Object makeURLContexts(const std::vector<Object>& urls) {
  std::vector<Object> contexts;
  for (const Object& url : urls) {
    contexts.push_back(makeStandIn(Class::named(contextClass)));
    setProperty(contexts.back().raw(), "URL", url);
  }
  return makeOrderedSet(contexts);
}

bool deliverDeviceToken(std::span<const std::uint8_t> token) {
  if (!calls(selector<didRegister>())) return false;
  sendDeviceToken(appDelegate(), application(), zib::makeData(token).raw());
  return true;
}

bool deliverRegistrationFailure(const std::optional<zib::Error>& error) {
  if (!calls(selector<didFailToRegister>())) return false;
  const Object native = error ? error->nativeError() : Object();
  sendRegistrationFailure(appDelegate(), application(), native.raw());
  return true;
}

std::optional<bool> deliverURL(const zib::URL& url, const zib::ValueMap& options) {
  if (calls(selector<openURLWithOptions>())) {
    const Object dictionary = zib::objectFrom(options);
    return sendURL(appDelegate(), application(), url.native(), dictionary.raw());
  }
  if (calls(selector<openURLFromSource>())) {
    return sendURLFromSource(appDelegate(), application(), url.native(), nullptr, nullptr);
  }
  if (calls(selector<handleOpenURL>())) {
    return sendURLToHandle(appDelegate(), application(), url.native());
  }
  return std::nullopt;
}

bool deliverURLContexts(std::size_t index, const std::vector<zib::URL>& urls) {
  const id delegate = send<id>(scene(index), selector<"delegate">());
  if (!responds(delegate, selector<sceneOpenURLContexts>())) return false;
  std::vector<Object> objects;
  objects.reserve(urls.size());
  for (const zib::URL& url : urls) objects.push_back(Object::retained(url.native()));
  sendURLContexts(delegate, scene(index), makeURLContexts(objects).raw());
  return true;
}

}  // namespace sim::uikit
