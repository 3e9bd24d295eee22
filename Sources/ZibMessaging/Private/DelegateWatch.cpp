#include "ZibMessaging/Private/DelegateWatch.h"

#include <atomic>

#include "ZibMessaging/Private/CallbackInProgress.h"
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

// A setter of delegates that is watched, and what it did before.
struct WatchedSetter {
  const char* className;
  DelegateKind kind;
  std::atomic<IMP> before{nullptr};
};
constinit WatchedSetter notificationSetter{"UNUserNotificationCenter", DelegateKind::notifications};
constinit WatchedSetter firebaseSetter{"FIRMessaging", DelegateKind::firebase};

// How many calls of setters are under way on this thread, one within the other.
class SetterInProgress {
 public:
  SetterInProgress() noexcept { ++depth; }
  ~SetterInProgress() { --depth; }
  SetterInProgress(const SetterInProgress&) = delete;
  SetterInProgress& operator=(const SetterInProgress&) = delete;

  [[nodiscard]] static bool isCircle() noexcept { return depth > maximumDepth; }

 private:
  static constinit thread_local int depth;
};
constinit thread_local int SetterInProgress::depth = 0;

// The delegate that comes is intercepted before the system asks it what it has.
void setAndIntercept(const WatchedSetter& setter, id self, SEL command, id delegate) {
  const SetterInProgress inProgress;
  if (SetterInProgress::isCircle()) {
    reportCircle("setDelegate:");
    return;
  }
  const DelegateLook& look = lookFor(setter.kind);
  const bool isMain = isMainThread();
  if (isMain && delegate != nullptr) {
    contained(operation, [&] { interceptNewDelegate(look, delegate); });
  }
  callImplementation<void>(setter.before.load(std::memory_order_acquire), self, Selector(command),
                           delegate);
  if (!isMain) containedOnMain(operation, [&look] { lookForNewDelegates(look); });
}

template <WatchedSetter& setter>
void watchedSetDelegate(id self, SEL command, id delegate) {
  setAndIntercept(setter, self, command, delegate);
}

void watch(WatchedSetter& setter, IMP watched) {
  if (setter.before.load(std::memory_order_relaxed) != nullptr) return;
  const Class cls = Class::named(setter.className);
  const Method method = cls ? cls.instanceMethod(selector<"setDelegate:">()) : Method(nullptr);
  if (!method) return;
  setter.before.store(method.implementation(), std::memory_order_release);
  method.setImplementation(watched);
}

void watchSetters() {
  watch(notificationSetter, objc::functionCast<IMP>(&watchedSetDelegate<notificationSetter>));
  watch(firebaseSetter, objc::functionCast<IMP>(&watchedSetDelegate<firebaseSetter>));
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
