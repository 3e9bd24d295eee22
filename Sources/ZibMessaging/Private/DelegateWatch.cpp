#include "ZibMessaging/Private/DelegateWatch.h"

#include <atomic>

#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/Deferred.h"
#include "ZibMessaging/Private/DelegateLook.h"
#include "ZibMessaging/Private/FirebaseHookup.h"
#include "ZibPlatform/Dispatch/MainQueue.h"
#include "ZibPlatform/FirebaseMessaging/FirebaseMessaging.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

using objc::id;
using objc::IMP;
using objc::SEL;

namespace {

constexpr const char* operation = "watching for delegates";

// What the setters did before.
constinit std::atomic<IMP> setNotificationDelegate{nullptr};
constinit std::atomic<IMP> setFirebaseDelegate{nullptr};

// The delegate that comes is intercepted before the system asks it what it has.
template <std::atomic<IMP>& before, DelegateKind kind>
void watchedSetDelegate(id self, SEL command, id delegate) {
  const bool isMain = isMainThread();
  if (isMain && delegate != nullptr) {
    contained(operation, [&] { interceptNewDelegate(lookFor(kind), delegate); });
  }
  callImplementation<void>(before.load(std::memory_order_acquire), self, Selector(command),
                           delegate);
  if (!isMain) containedOnMain(operation, [] { lookForNewDelegates(lookFor(kind)); });
}

template <std::atomic<IMP>& before, DelegateKind kind>
void watchSetter(const char* className) {
  if (before.load(std::memory_order_relaxed) != nullptr) return;
  const Class cls = Class::named(className);
  const Method setter = cls ? cls.instanceMethod(selector<"setDelegate:">()) : Method(nullptr);
  if (!setter) return;
  before.store(setter.implementation(), std::memory_order_release);
  setter.setImplementation(objc::functionCast<IMP>(&watchedSetDelegate<before, kind>));
}

void watchSetters() {
  watchSetter<setNotificationDelegate, DelegateKind::notifications>("UNUserNotificationCenter");
  watchSetter<setFirebaseDelegate, DelegateKind::firebase>("FIRMessaging");
}

void lookAroundOnMain() {
  watchSetters();
  for (const DelegateLook& look : delegateLooks) {
    contained(look.operation, [&] { lookForNewDelegates(look); });
  }
}

// What the system posts: a scene connects, or the app has launched. Any delegate may have come with
// it, and Firebase too.
void lookAround(id, SEL, id /*notification*/) {
  if (isMainThread()) {
    contained(operation, &lookAroundOnMain);
  } else {
    containedOnMain(operation, &lookAroundOnMain);
  }
}

// Firebase has been configured. The host has the rest of this turn to set a delegate.
void lookAtFirebase(id self, SEL command, id notification) {
  lookAround(self, command, notification);
  containedOnMain(operation, [] {
    if (FirebaseMessaging::find().delegate() == nullptr) becomeFirebaseDelegate();
  });
}

Object makeObserver() {
  const Class cls = ClassBuilder("ZibDelegateWatch", classNamed<"NSObject">())
                        .method("lookAround:", &lookAround)
                        .method("lookAtFirebase:", &lookAtFirebase)
                        .registerClass();
  return create(cls);
}

}  // namespace

void watchForDelegates() {
  watchSetters();
  // Never released: the watch lasts as long as the process.
  static const id observer = makeObserver().relinquish();
  const id center = sendToClass<"NSNotificationCenter", "defaultCenter">();
  const auto observe = [&](ConstantString name, Selector reaction) {
    send<void>(center, selector<"addObserver:selector:name:object:">(), observer, reaction.raw(),
               name.object(), id{});
  };
  observe(constantString<"UISceneWillConnectNotification">, selector<"lookAround:">());
  observe(constantString<"UIApplicationDidFinishLaunchingNotification">, selector<"lookAround:">());
  observe(constantString<"FIRAppReadyToConfigureSDKNotification">, selector<"lookAtFirebase:">());
}

}  // namespace zib
