#include "Simulator/UIKit/UIKit.h"

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/ObjectiveC/StandIn.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/Foundation/Strings.h"
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
  zib::ClassBuilder builder("UIApplication", classNamed<"NSObject">());
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

void install(ApplicationPresence presence, bool opensURLs) {
  state().opensURLs = opensURLs;
  if (presence != ApplicationPresence::noClass) registerApplication(presence);
  const Class scene = registerStandIn("UIScene", classNamed<"NSObject">(), {{"delegate"}});
  zib::ClassBuilder("UIWindowScene", scene).registerClass();
  registerStandIn("UIOpenURLContext", classNamed<"NSObject">(), {{"URL"}});
}

id application() { return state().application.raw(); }
void setAppDelegate(Object delegate) { state().appDelegate = std::move(delegate); }
id appDelegate() { return state().appDelegate.raw(); }

void connectScene(bool hasWindow, const Object& delegate) {
  Object scene = makeStandIn(hasWindow ? classNamed<"UIWindowScene">() : classNamed<"UIScene">());
  setProperty(scene.raw(), "delegate", delegate);
  state().scenes.push_back(std::move(scene));
}

id scene(std::size_t index) { return state().scenes.at(index).raw(); }

Object makeURLContexts(const std::vector<Object>& urls) {
  std::vector<Object> contexts;
  for (const Object& url : urls) {
    contexts.push_back(makeStandIn(classNamed<"UIOpenURLContext">()));
    setProperty(contexts.back().raw(), "URL", url);
  }
  return makeOrderedSet(contexts);
}

}  // namespace sim::uikit
