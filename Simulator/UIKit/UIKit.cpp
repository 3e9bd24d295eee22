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

struct State {
  bool opensURLs = true;
  Object application;
  Object appDelegate;
  std::vector<Object> scenes;
};

State& state() {
  static State state;
  return state;
}

void record(const char* operation, Json fields = Json::object()) {
  fields["operation"] = operation;
  Timeline::shared().add("system", fields);
}

id sharedApplication(id, SEL) { return state().application.raw(); }
id delegate(id, SEL) { return state().appDelegate.raw(); }
void setDelegate(id, SEL, id newDelegate) { state().appDelegate = Object::retained(newDelegate); }

id connectedScenes(id, SEL) { return autoreleased(makeOrderedSet(state().scenes)); }

void registerForRemoteNotifications(id, SEL) { record("registerForRemoteNotifications"); }

void openURL(id, SEL, id url, id options, BlockLayout* completion) {
  using Completion = Block<void(BOOL)>;
  record("openURL", {{"url", zib::utf8From(send<id>(url, selector<"absoluteString">()))},
                     {"options", jsonFromObject(options)}});
  Scheduler::shared().submitNow(
      [kept = Completion::copied(completion)] { kept(static_cast<BOOL>(state().opensURLs)); });
}

void registerApplication(ApplicationPresence presence) {
  zib::ClassBuilder builder(applicationClass, classNamed<"NSObject">());
  builder.classMethod("sharedApplication", &sharedApplication)
      .method("delegate", &delegate)
      .method("setDelegate:", &setDelegate)
      .method("connectedScenes", &connectedScenes)
      .method("registerForRemoteNotifications", &registerForRemoteNotifications);
  if (presence != ApplicationPresence::noOpenURL) {
    builder.method("openURL:options:completionHandler:", &openURL);
  }
  const Class cls = builder.registerClass();
  if (presence != ApplicationPresence::noInstance) {
    state().application = Object::adopted(send<id>(cls.object(), selector<"new">()));
  }
}

}  // namespace

std::vector<std::string_view> classNames() {
  return {applicationClass, sceneClass, windowSceneClass, contextClass};
}

void install(ApplicationPresence presence, bool opensURLs) {
  state().opensURLs = opensURLs;
  if (presence != ApplicationPresence::noClass) registerApplication(presence);
  const Class scene = registerStandIn(sceneClass, classNamed<"NSObject">(), {{"delegate"}});
  zib::ClassBuilder(windowSceneClass, scene).registerClass();
  registerStandIn(contextClass, classNamed<"NSObject">(), {{"URL"}});
}

id application() { return state().application.raw(); }
void setAppDelegate(Object delegate) { state().appDelegate = std::move(delegate); }
id appDelegate() { return state().appDelegate.raw(); }

void connectScene(bool hasWindow, const Object& delegate) {
  Object scene = makeStandIn(Class::named(hasWindow ? windowSceneClass : sceneClass));
  setProperty(scene.raw(), "delegate", delegate);
  state().scenes.push_back(std::move(scene));
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

void deliverDeviceToken(std::span<const std::uint8_t> token) {
  if (!responds(appDelegate(), selector<didRegister>())) return;
  sendDeviceToken(appDelegate(), application(), zib::makeData(token).raw());
}

void deliverRegistrationFailure(const std::optional<zib::Error>& error) {
  if (!responds(appDelegate(), selector<didFailToRegister>())) return;
  const Object native = error ? error->nativeError() : Object();
  sendRegistrationFailure(appDelegate(), application(), native.raw());
}

std::optional<bool> deliverURL(const zib::URL& url, const zib::ValueMap& options) {
  if (!responds(appDelegate(), selector<openURLWithOptions>())) return std::nullopt;
  const Object dictionary = zib::objectFrom(options);
  return sendURL(appDelegate(), application(), url.native(), dictionary.raw());
}

void deliverURLContexts(std::size_t index, const std::vector<zib::URL>& urls) {
  const id delegate = send<id>(scene(index), selector<"delegate">());
  if (!responds(delegate, selector<sceneOpenURLContexts>())) return;
  std::vector<Object> objects;
  for (const zib::URL& url : urls) objects.push_back(Object::retained(url.native()));
  sendURLContexts(delegate, scene(index), makeURLContexts(objects).raw());
}

}  // namespace sim::uikit
