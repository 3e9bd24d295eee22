#include "ZibMessaging/Private/DelegateLook.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "ZibMessaging/Private/AddOrSwap.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/Interceptors.h"
#include "ZibMessaging/Private/MessagingFace.h"
#include "ZibMessaging/Private/Recording.h"
#include "ZibPlatform/FirebaseMessaging/FirebaseMessaging.h"
#include "ZibPlatform/Foundation/Process.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/UIKit/Application.h"
#include "ZibPlatform/UIKit/Scenes.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

namespace zib {
namespace {

std::optional<Application> sharedApplication() {
  if (isAppExtension()) return std::nullopt;
  auto application = Application::shared();
  if (!application || !application->isApplicationObject()) return std::nullopt;
  return application;
}

// The delegate, or nil when there is nothing to intercept it with, since the name of the
// interceptors' class is taken.
objc::id interceptable(objc::id delegate) { return interceptorClass() ? delegate : nullptr; }

Sighting only(objc::id delegate) { return {.delegates = {Object::retained(delegate)}}; }

Sighting findAppDelegate() {
  const auto application = sharedApplication();
  const objc::id delegate = application ? interceptable(application->delegate()) : nullptr;
  if (delegate == nullptr) return {{}, "⚠️ No AppDelegate found"};
  return only(delegate);
}

void renewAppDelegate() {
  contained("renewing the application's delegate", [] {
    if (const auto application = sharedApplication()) application->renewDelegate();
  });
}

Sighting findSceneDelegates() {
  const auto application = sharedApplication();
  if (!application) return {};
  const auto scenes = ConnectedScenes::of(*application);
  if (scenes.empty())
    return {{}, "ℹ️ No connected scenes yet - will check again shortly", true};
  if (!interceptorClass()) return {};
  return {.delegates = scenes.windowSceneDelegates()};
}

Sighting findNotificationDelegate() {
  const objc::id delegate = interceptable(NotificationCenter::current().delegate());
  if (delegate != nullptr) return only(delegate);
  return {{}, "ℹ️ No UNUserNotificationCenterDelegate set yet - will check again", true};
}

Sighting findFirebaseDelegate() {
  const FirebaseMessaging firebase = FirebaseMessaging::find();
  switch (firebase.found()) {
    case FirebaseMessaging::Found::nothing:
      return {{}, "ℹ️ Firebase Messaging not found - FCM token handling will be manual"};
    case FirebaseMessaging::Found::classOnly:
      return {{}, "⚠️ Firebase Messaging class method not found"};
    case FirebaseMessaging::Found::classMethod:
      return {{}, "⚠️ Firebase Messaging instance not available"};
    case FirebaseMessaging::Found::instance:
      break;
  }
  const objc::id delegate = interceptable(firebase.delegate());
  if (delegate != nullptr) return only(delegate);
  return {{}, "ℹ️ No Firebase MessagingDelegate set yet - will retry", true};
}

constexpr std::array appRows{Row::didRegister, Row::didFailRegister, Row::openURL};
constexpr std::array sceneRows{Row::sceneOpenURL};
constexpr std::array notificationRows{Row::willPresent, Row::didReceive};
constexpr std::array firebaseRows{Row::fcmToken};

// contained(), whose operation gets its name only where something was stopped.
template <class NameOf, class Work>
bool containedAs(const NameOf& nameOfOperation, const Work& work) noexcept {
  const Caught stopped = caughtFrom(work);
  if (stopped == nullptr) return true;
  contained("the report of a delegate that raises",
            [&] { reportStopped(nameOfOperation().c_str(), *stopped); });
  return false;
}

// Each row on its own, so that a delegate that raises for one of them loses no other.
void install(const DelegateLook& look, const LinePart& found, objc::id delegate,
             Installed (*install)(Row row, objc::id delegate, Class visible)) {
  const Class visible = classOfDelegate(delegate).visible;
  logLine(found, visible.name());
  bool isAdded = false;
  for (const Row row : look.rows) {
    const auto operation = [&] {
      return std::string("intercepting ") + interceptionOf(row).hostSelector + " of " +
             visible.name();
    };
    containedAs(operation, [&] {
      const Installed how = install(row, delegate, visible);
      isAdded |= how == Installed::added || how == Installed::forwarding;
    });
  }
  if (isAdded && look.methodsAdded != nullptr) look.methodsAdded();
}

}  // namespace

const std::array<DelegateLook, 4> delegateLooks{{
    {"swizzleAppDelegate", &findAppDelegate, appRows,
     "📱 Swizzling AppDelegate: ", "📱 Swizzling AppDelegate: ", 0, &addOrSwap, &renewAppDelegate},
    {"swizzleSceneDelegate", &findSceneDelegates, sceneRows,
     "🎬 Swizzling SceneDelegate: ", "🎬 Found SceneDelegate (delayed): ", 1.0, &addOrSwap, nullptr},
    {"swizzleNotificationCenterDelegate", &findNotificationDelegate, notificationRows,
     "🔔 Swizzling UNUserNotificationCenterDelegate: ",
     "🔔 Found UNUserNotificationCenterDelegate (delayed): ", 0.5, &addOrSwap, nullptr},
    // A delegate that came late and takes no tokens gets no method.
    {"swizzleFirebaseMessagingDelegate", &findFirebaseDelegate, firebaseRows,
     "🔥 Swizzling Firebase MessagingDelegate: ", "🔥 Found Firebase MessagingDelegate (delayed): ",
     1.0, &swapIfPresent, nullptr},
}};

ClassOfDelegate classOfDelegate(objc::id delegate) {
  Class cls = Class::ofObject(delegate);
  const auto operation = [&] {
    return std::string("asking a delegate of ") + cls.name() + " for its class";
  };
  const bool answers = containedAs(operation, [&] { cls = Class::visibleClassOf(delegate); });
  return {cls, !answers};
}

Sighting lookForDelegates(const DelegateLook& look) {
  recording::told(recording::looking);
  Sighting sighting = look.find();
  for (const Object& each : sighting.delegates) install(look, look.found, each.raw(), &addOrSwap);
  if (!sighting.absence.empty()) logLine(sighting.absence);
  return sighting;
}

void lookAgainForDelegates(const DelegateLook& look) {
  recording::told(recording::looking);
  for (const Object& each : look.find().delegates) {
    install(look, look.foundLater, each.raw(), look.installLater);
  }
}

void lookForNewDelegates(const DelegateLook& look) {
  recording::told(recording::looking);
  for (const Object& each : look.find().delegates) interceptNewDelegate(look, each.raw());
}

// The module's own object takes Firebase's tokens itself: intercepted, it would take each twice.
void interceptNewDelegate(const DelegateLook& look, objc::id delegate) {
  if (&look == &lookFor(DelegateKind::firebase) && delegate == messagingFace()) return;
  const bool isNew = std::any_of(look.rows.begin(), look.rows.end(),
                                 [&](Row row) { return !isIntercepted(row, delegate); });
  if (isNew) install(look, look.foundLater, delegate, &addOrSwap);
}

}  // namespace zib
