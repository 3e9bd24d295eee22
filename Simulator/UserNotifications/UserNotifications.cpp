#include "Simulator/UserNotifications/UserNotifications.h"

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <mutex>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/Json/Values.h"
#include "Simulator/ObjectiveC/DelegateCall.h"
#include "Simulator/ObjectiveC/HostsAct.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "Simulator/ObjectiveC/StandIn.h"
#include "Simulator/ObjectiveC/WeakReference.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/Foundation/Elements.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim::usernotifications {
namespace {

using zib::BlockLayout;
using zib::Class;
using zib::classNamed;
using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;
using Handler = zib::Block<void(BOOL, id)>;

constexpr const char* contentClass = "UNNotificationContent";
constexpr const char* requestClass = "UNNotificationRequest";
constexpr const char* notificationClass = "UNNotification";
constexpr const char* responseClass = "UNNotificationResponse";
constexpr const char* actionClass = "UNNotificationAction";
constexpr const char* categoryClass = "UNNotificationCategory";
constexpr const char* centerClass = "UNUserNotificationCenter";

struct CentreState {
  Object center;
  WeakReference delegate;
  // What the host keeps alive.
  Object hostsDelegate;
  std::optional<Answer> answer;
  bool hasBundleIdentifier = true;
  std::mutex mutex;
  std::deque<Handler> requests;
};

CentreState& state() {
  static zib::NeverDestroyed<CentreState> state([] { return CentreState(); });
  return *state;
}

void record(const char* operation, Json fields) {
  fields["operation"] = operation;
  Timeline::shared().add("system", fields);
}

void give(const Handler& handler, const Answer& answer) {
  const Object error = answer.error ? answer.error->nativeError() : Object();
  handler(static_cast<BOOL>(answer.granted), error.raw());
}

id currentNotificationCenter(id, SEL) {
  if (!state().hasBundleIdentifier) {
    std::fputs(
        "zibsim: bundleProxyForCurrentProcess is nil: +currentNotificationCenter was called in "
        "a process without a bundle identifier\n",
        stderr);
    std::abort();
  }
  return state().center.raw();
}
id getDelegate(id, SEL) { return state().delegate.get(); }

void recordAndSetDelegate(id, SEL, id delegate) {
  if (!HostsAct::isRunning()) {
    const Json name = delegate == nullptr ? Json() : Json(classNameOf(delegate));
    record("setNotificationDelegate", {{"class", name}});
  }
  state().delegate.set(delegate);
}

void requestAuthorization(id, SEL, UInteger options, BlockLayout* handler) {
  record("requestAuthorization", {{"options", options}});
  {
    const std::lock_guard lock(state().mutex);
    state().requests.push_back(Handler::copied(handler));
  }
  if (state().answer) {
    Scheduler::shared().submitElsewhere("system", [] { answerOldestRequest(*state().answer); });
  }
}

Json describeAction(id action) {
  return {{"identifier", jsonFromObject(send<id>(action, selector<"identifier">()))},
          {"title", jsonFromObject(send<id>(action, selector<"title">()))},
          {"options", send<UInteger>(action, selector<"options">())}};
}

template <class Describe>
Json describeEach(id collection, Describe describe) {
  Json result = Json::array();
  for (const id element : zib::elements(collection)) result.push_back(describe(element));
  return result;
}

Json describeCategory(id category) {
  return {
      {"identifier", jsonFromObject(send<id>(category, selector<"identifier">()))},
      {"options", send<UInteger>(category, selector<"options">())},
      {"intentIdentifiers", jsonFromObject(send<id>(category, selector<"intentIdentifiers">()))},
      {"actions", describeEach(send<id>(category, selector<"actions">()), &describeAction)}};
}

void setNotificationCategories(id, SEL, id categories) {
  record("setNotificationCategories",
         {{"categories", describeEach(categories, &describeCategory)}});
}

id makeAction(id cls, SEL, id identifier, id title, UInteger options) {
  const Object action = makeStandIn(Class(reinterpret_cast<zib::objc::Class>(cls)));
  setProperty(action.raw(), "identifier", Object::retained(identifier));
  setProperty(action.raw(), "title", Object::retained(title));
  setProperty(action.raw(), "options", zib::Value(std::uint64_t{options}));
  return autoreleased(action);
}

id makeCategory(id cls, SEL, id identifier, id actions, id intents, UInteger options) {
  const Object category = makeStandIn(Class(reinterpret_cast<zib::objc::Class>(cls)));
  setProperty(category.raw(), "identifier", Object::retained(identifier));
  setProperty(category.raw(), "actions", Object::retained(actions));
  setProperty(category.raw(), "intentIdentifiers", Object::retained(intents));
  setProperty(category.raw(), "options", zib::Value(std::uint64_t{options}));
  return autoreleased(category);
}

void registerValueClasses() {
  const Class object = classNamed<"NSObject">();
  registerStandIn(contentClass, object, {{"userInfo"}});
  registerStandIn(requestClass, object, {{"content"}});
  registerStandIn(notificationClass, object, {{"request"}});
  registerStandIn(responseClass, object, {{"notification", "actionIdentifier"}});
  const Class action = registerStandIn(actionClass, object, {{"identifier", "title"}, {"options"}});
  installClassMethod(action, "actionWithIdentifier:title:options:", &makeAction);
  const Class category = registerStandIn(
      categoryClass, object, {{"identifier", "actions", "intentIdentifiers"}, {"options"}});
  installClassMethod(category,
                     "categoryWithIdentifier:actions:intentIdentifiers:options:", &makeCategory);
}

}  // namespace

std::vector<std::string_view> classNames() {
  return {contentClass, requestClass,  notificationClass, responseClass,
          actionClass,  categoryClass, centerClass};
}

void install(std::optional<Answer> answer, bool hasBundleIdentifier) {
  state().hasBundleIdentifier = hasBundleIdentifier;
  state().answer = std::move(answer);
  registerValueClasses();
  const Class cls =
      zib::ClassBuilder(centerClass, classNamed<"NSObject">())
          .classMethod("currentNotificationCenter", &currentNotificationCenter)
          .method("delegate", &getDelegate)
          .method("setDelegate:", &recordAndSetDelegate)
          .method("requestAuthorizationWithOptions:completionHandler:", &requestAuthorization)
          .method("setNotificationCategories:", &setNotificationCategories)
          .registerClass();
  state().center = zib::create(cls);
}

void setDelegate(Object delegate) {
  // As hosts do, since others may stand before the setter.
  const HostsAct act;
  send<void>(center(), selector<"setDelegate:">(), delegate.raw());
  state().hostsDelegate = std::move(delegate);
}

id delegate() { return state().delegate.get(); }

bool answerOldestRequest(const Answer& answer) {
  std::optional<Handler> handler;
  {
    const std::lock_guard lock(state().mutex);
    if (state().requests.empty()) return false;
    handler = std::move(state().requests.front());
    state().requests.pop_front();
  }
  give(*handler, answer);
  return true;
}

id center() { return state().center.raw(); }

Object makeNotification(const zib::ValueMap& userInfo) {
  const Object content = makeStandIn(Class::named(contentClass));
  setProperty(content.raw(), "userInfo", zib::objectFrom(userInfo));
  const Object request = makeStandIn(Class::named(requestClass));
  setProperty(request.raw(), "content", content);
  Object notification = makeStandIn(Class::named(notificationClass));
  setProperty(notification.raw(), "request", request);
  return notification;
}

Object makeResponse(const zib::ValueMap& userInfo, const std::string& action) {
  Object response = makeStandIn(Class::named(responseClass));
  setProperty(response.raw(), "notification", makeNotification(userInfo));
  setProperty(response.raw(), "actionIdentifier", zib::makeString(action));
  return response;
}

bool present(const zib::ValueMap& userInfo,
             const std::function<PresentationCompletion()>& completion) {
  if (!responds(delegate(), selector<willPresent>())) return false;
  sendNotification(delegate(), center(), makeNotification(userInfo).raw(), completion());
  return true;
}

bool respond(const zib::ValueMap& userInfo, const std::string& action,
             const std::function<ResponseCompletion()>& completion) {
  if (!responds(delegate(), selector<didReceive>())) return false;
  sendResponse(delegate(), center(), makeResponse(userInfo, action).raw(), completion());
  return true;
}

}  // namespace sim::usernotifications
