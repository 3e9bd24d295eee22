#include "Recorder/HostView.h"

#ifdef ZIB_RECORDS_CALLS

#include <algorithm>
#include <array>
#include <utility>

#include "ZibMessaging/Private/Interception.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibPlatform/FirebaseMessaging/FirebaseMessaging.h"
#include "ZibPlatform/Foundation/Elements.h"
#include "ZibPlatform/ObjectiveC/Send.h"
#include "ZibPlatform/UIKit/Application.h"
#include "ZibPlatform/UIKit/Scenes.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

namespace zib::recorder {
namespace {

using objc::id;

struct DelegateMethod {
  const char* name;
  const char* selector;
};

const char* selectorOf(Row row) { return interceptionOf(row).hostSelector; }

// By the names that scenarios have for them.
const std::array<DelegateMethod, 9> methods{{
    {"didRegister", selectorOf(Row::didRegister)},
    {"didFail", selectorOf(Row::didFailRegister)},
    {"openURL", selectorOf(Row::openURL)},
    {"openURLFromSource", "application:openURL:sourceApplication:annotation:"},
    {"handleOpenURL", "application:handleOpenURL:"},
    {"openURLContexts", selectorOf(Row::sceneOpenURL)},
    {"willPresent", selectorOf(Row::willPresent)},
    {"didReceive", selectorOf(Row::didReceive)},
    {"token", selectorOf(Row::fcmToken)},
}};

bool isProxy(Class cls) { return cls.derivesFrom(classNamed<"NSProxy">()); }

// Whether a delegate's methods could come from there; the system's own classes have none.
bool answersAny(Class cls) {
  return std::any_of(methods.begin(), methods.end(), [&](const DelegateMethod& method) {
    return static_cast<bool>(cls.instanceMethod(Selector(method.selector)));
  });
}

id hostsOwn(id delegate) { return delegate == ZibMessaging::runtimeObject() ? nullptr : delegate; }

std::vector<SceneView> scenesOf(const Application& application) {
  std::vector<SceneView> scenes;
  for (const id scene : elements(send<id>(application.native(), selector<"connectedScenes">()))) {
    const bool hasDelegate = respondsTo(scene, selector<"delegate">());
    scenes.push_back({scene, isKind<"UIWindowScene">(scene),
                      hasDelegate ? send<id>(scene, selector<"delegate">()) : nullptr});
  }
  return scenes;
}

}  // namespace

FirebaseView firebaseNow() {
  using Found = FirebaseMessaging::Found;
  FirebaseView view;
  const FirebaseMessaging firebase = FirebaseMessaging::find();
  view.isThere = firebase.found() != Found::nothing;
  view.hasClassMethod =
      firebase.found() == Found::classMethod || firebase.found() == Found::instance;
  view.hasInstance = firebase.found() == Found::instance;
  if (!view.hasInstance) return view;
  const id instance = firebase.native();
  view.hasDelegateProperty = respondsTo(instance, selector<"delegate">());
  view.isSettable = respondsTo(instance, selector<"setDelegate:">());
  view.delegate = hostsOwn(firebase.delegate());
  return view;
}

HostView HostView::now() {
  HostView view;
  view.hasApplicationClass = static_cast<bool>(classNamed<"UIApplication">());
  if (const auto application = Application::shared()) {
    view.hasApplication = true;
    view.opensURLs =
        respondsTo(application->native(), selector<"openURL:options:completionHandler:">());
    view.appDelegate = application->delegate();
    view.scenes = scenesOf(*application);
  }
  view.notificationDelegate = hostsOwn(NotificationCenter::current().delegate());
  view.firebase = firebaseNow();
  return view;
}

const ValueMap& HostClasses::describe(Class cls) {
  const std::string name = cls.name();
  if (const auto known = descriptions_.find(name); known != descriptions_.end()) {
    return known->second;
  }
  Array implemented;
  for (const DelegateMethod& method : methods) {
    const Selector selector(method.selector);
    if (cls.instanceMethod(selector) && cls.ownerOf(selector) == cls) {
      implemented.push_back(method.name);
    }
  }
  ValueMap description{{"class", name}, {"implements", std::move(implemented)}};
  const Class above = cls.superclass();
  if (above && (answersAny(above) || descriptions_.contains(above.name()))) {
    description.set("superclass", describe(above));
  }
  return descriptions_.emplace(name, std::move(description)).first->second;
}

// What the object answers without its class having it, it forwards; which object that goes to
// nobody says.
Value HostClasses::describe(id delegate) {
  if (delegate == nullptr) return Null();
  const Class cls = Class::visibleClassOf(delegate);
  const bool isKnown = descriptions_.contains(cls.name());
  const ValueMap description = describe(cls);
  if (isKnown) return description;
  Array forwarded;
  for (const DelegateMethod& method : methods) {
    const Selector selector(method.selector);
    if (!cls.instanceMethod(selector) && respondsTo(delegate, selector)) {
      forwarded.push_back(method.name);
    }
  }
  if (forwarded.empty()) return description;
  ValueMap forwarding = description;
  forwarding.set("forwardsTo", ValueMap{{"class", std::string(cls.name()) + "Target"},
                                        {"implements", std::move(forwarded)}});
  if (isProxy(cls)) forwarding.set("forwarding", "proxy");
  descriptions_.insert_or_assign(cls.name(), forwarding);
  return forwarding;
}

}  // namespace zib::recorder

#endif
