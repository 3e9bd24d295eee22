#include "ZibMessaging/ZibSwizzleManager.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/QuotedText.h"
#include "ZibPlatform/Dispatch/MainQueue.h"
#include "ZibPlatform/FirebaseMessaging/FirebaseMessaging.h"
#include "ZibPlatform/Foundation/Process.h"
#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"
#include "ZibPlatform/UIKit/Scenes.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

using zib::appendQuoted;
using zib::Class;
using zib::contained;
using zib::FirebaseMessaging;
using zib::logLine;
using zib::Method;
using zib::Selector;

namespace {

constexpr double notificationDelegateRetryDelay = 0.5;  // seconds
constexpr double sceneRetryDelay = 1.0;                 // seconds
constexpr double firebaseRetryDelay = 1.0;              // seconds

// Whether a query of this text could hold campaign parameters. Splitting a URL costs more than all
// else in a callback, and most have none. A name can also be percent-encoded.
bool mayHaveUTMParameters(std::string_view url) {
  const std::size_t query = url.find('?');
  if (query == std::string_view::npos) return false;
  return url.find("utm_", query) != std::string_view::npos ||
         url.find('%', query) != std::string_view::npos;
}

}  // namespace

const std::array<ZibSwizzleManager::Interception, ZibSwizzleManager::rowCount>
    ZibSwizzleManager::interceptions{{
        {"application:didRegisterForRemoteNotificationsWithDeviceToken:",
         "zib_didRegister:deviceToken:", "didRegisterForRemoteNotificationsWithDeviceToken",
         &ZibSwizzleManager::originalDidRegisterIMP_, &ZibSwizzleManager::didSwapDidRegister_},
        {"application:didFailToRegisterForRemoteNotificationsWithError:",
         "zib_didFailRegister:error:", "didFailToRegisterForRemoteNotificationsWithError",
         &ZibSwizzleManager::originalDidFailRegisterIMP_,
         &ZibSwizzleManager::didSwapDidFailRegister_},
        {"application:openURL:options:", "zib_openURL:url:options:", "application:open:options:",
         &ZibSwizzleManager::originalOpenURLIMP_, &ZibSwizzleManager::didSwapOpenURL_},
        {"scene:openURLContexts:", "zib_scene:openURLContexts:", "scene:openURLContexts:",
         &ZibSwizzleManager::originalSceneOpenURLIMP_, &ZibSwizzleManager::didSwapSceneOpenURL_},
        {"userNotificationCenter:willPresentNotification:withCompletionHandler:",
         "zib_willPresent:notification:completionHandler:", "willPresent:withCompletionHandler:",
         &ZibSwizzleManager::originalWillPresentIMP_, &ZibSwizzleManager::didSwapWillPresent_},
        {"userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
         "zib_didReceive:response:completionHandler:", "didReceive:withCompletionHandler:",
         &ZibSwizzleManager::originalDidReceiveIMP_, &ZibSwizzleManager::didSwapDidReceive_},
        {"messaging:didReceiveRegistrationToken:", "zib_messaging:didReceiveRegistrationToken:",
         "messaging:didReceiveRegistrationToken:", &ZibSwizzleManager::originalFCMTokenIMP_,
         &ZibSwizzleManager::didSwapFCMToken_},
    }};

std::shared_ptr<ZibSwizzleManager>& ZibSwizzleManager::slot() {
  static zib::NeverDestroyed<std::shared_ptr<ZibSwizzleManager>> instance(
      [] { return std::make_shared<ZibSwizzleManager>(Key()); });
  return *instance;
}

ZibSwizzleManager& ZibSwizzleManager::shared() { return *slot(); }

void ZibSwizzleManager::setupAutoSwizzling() noexcept {
  contained("setupAutoSwizzling", [&] {
    if (zib::isAppExtension()) {
      logLine("ℹ️ Running in app extension - swizzling not applicable");
      return;
    }
    if (!isSwizzlingEnabled_) {
      logLine("⚠️ Swizzling is DISABLED");
      return;
    }
    if (hasSwizzled_) {
      logLine("⚠️ Swizzling already performed");
      return;
    }
    auto pass = [this] { contained("the swizzling pass", [this] { runPass(); }); };
    if (zib::isMainThread()) {
      pass();
    } else {
      zib::mainQueue::sync(pass);
    }
  });
}

void ZibSwizzleManager::runPass() {
  // Again, since another thread's pass may have run while this one waited for the main queue.
  if (hasSwizzled_) {
    logLine("⚠️ Swizzling already performed");
    return;
  }
  if (!runtimeClass()) {
    ZibLogger::shared().error("ZibSwizzleManager: another copy of the module is in this process",
                              std::nullopt);
    return;
  }
  logLine("🔧 Starting Zib SDK auto-swizzling...");
  // Each on its own, so that what one finds broken costs the others nothing.
  contained("swizzleAppDelegate", [this] { swizzleAppDelegate(); });
  contained("swizzleSceneDelegate", [this] { swizzleSceneDelegate(); });
  contained("swizzleNotificationCenterDelegate", [this] { swizzleNotificationCenterDelegate(); });
  contained("swizzleFirebaseMessagingDelegate", [this] { swizzleFirebaseMessagingDelegate(); });
  hasSwizzled_ = true;
  logLine("✅ Zib SDK swizzling complete!");
}

std::optional<zib::Application> ZibSwizzleManager::sharedApplication() {
  if (zib::isAppExtension()) return std::nullopt;
  auto application = zib::Application::shared();
  if (!application || !application->isApplicationObject()) return std::nullopt;
  return application;
}

void ZibSwizzleManager::swizzleAppDelegate() {
  const auto application = sharedApplication();
  const zib::objc::id delegate = application ? application->delegate() : nullptr;
  if (delegate == nullptr) {
    logLine("⚠️ No AppDelegate found");
    return;
  }
  logLine("📱 Swizzling AppDelegate: ", Class::visibleClassOf(delegate).name());
  addOrSwap(Row::didRegister, delegate);
  addOrSwap(Row::didFailRegister, delegate);
  addOrSwap(Row::openURL, delegate);
}

template <class Use>
void ZibSwizzleManager::forEachSceneDelegate(const zib::Application& application, Use use) {
  for (const zib::Object& delegate : zib::ConnectedScenes::of(application).windowSceneDelegates()) {
    use(delegate.raw());
  }
}

void ZibSwizzleManager::swizzleSceneDelegate() {
  const auto application = sharedApplication();
  if (!application) return;
  forEachSceneDelegate(*application, [this](zib::objc::id delegate) {
    logLine("🎬 Swizzling SceneDelegate: ", Class::visibleClassOf(delegate).name());
    addOrSwap(Row::sceneOpenURL, delegate);
  });
  if (!zib::ConnectedScenes::of(*application).empty()) return;
  logLine("ℹ️ No connected scenes yet - will check again shortly");
  lookAgain(sceneRetryDelay, &ZibSwizzleManager::retrySceneDelegateSwizzling);
}

void ZibSwizzleManager::retrySceneDelegateSwizzling() {
  const auto application = sharedApplication();
  if (!application) return;
  forEachSceneDelegate(*application, [this](zib::objc::id delegate) {
    logLine("🎬 Found SceneDelegate (delayed): ", Class::visibleClassOf(delegate).name());
    addOrSwap(Row::sceneOpenURL, delegate);
  });
}

void ZibSwizzleManager::swizzleNotificationCenterDelegate() {
  const zib::objc::id delegate = zib::NotificationCenter::current().delegate();
  if (delegate != nullptr) {
    logLine("🔔 Swizzling UNUserNotificationCenterDelegate: ",
            Class::visibleClassOf(delegate).name());
    swizzleNotificationDelegateMethods(delegate);
    return;
  }
  logLine("ℹ️ No UNUserNotificationCenterDelegate set yet - will check again");
  lookAgain(notificationDelegateRetryDelay, &ZibSwizzleManager::retryNotificationDelegateSwizzling);
}

void ZibSwizzleManager::retryNotificationDelegateSwizzling() {
  const zib::objc::id delegate = zib::NotificationCenter::current().delegate();
  if (delegate == nullptr) return;
  logLine("🔔 Found UNUserNotificationCenterDelegate (delayed): ",
          Class::visibleClassOf(delegate).name());
  swizzleNotificationDelegateMethods(delegate);
}

void ZibSwizzleManager::swizzleNotificationDelegateMethods(zib::objc::id delegate) {
  addOrSwap(Row::willPresent, delegate);
  addOrSwap(Row::didReceive, delegate);
}

void ZibSwizzleManager::swizzleFirebaseMessagingDelegate() {
  const FirebaseMessaging firebase = FirebaseMessaging::find();
  switch (firebase.found()) {
    case FirebaseMessaging::Found::nothing:
      logLine("ℹ️ Firebase Messaging not found - FCM token handling will be manual");
      return;
    case FirebaseMessaging::Found::classOnly:
      logLine("⚠️ Firebase Messaging class method not found");
      return;
    case FirebaseMessaging::Found::classMethod:
      logLine("⚠️ Firebase Messaging instance not available");
      return;
    case FirebaseMessaging::Found::instance:
      break;
  }
  const zib::objc::id delegate = firebase.delegate();
  if (delegate == nullptr) {
    logLine("ℹ️ No Firebase MessagingDelegate set yet - will retry");
    lookAgain(firebaseRetryDelay, &ZibSwizzleManager::retryFirebaseMessagingSwizzling);
    return;
  }
  logLine("🔥 Swizzling Firebase MessagingDelegate: ", Class::visibleClassOf(delegate).name());
  addOrSwap(Row::fcmToken, delegate);
}

void ZibSwizzleManager::retryFirebaseMessagingSwizzling() {
  const FirebaseMessaging firebase = FirebaseMessaging::find();
  if (firebase.found() != FirebaseMessaging::Found::instance) return;
  const zib::objc::id delegate = firebase.delegate();
  if (delegate == nullptr) return;
  logLine("🔥 Found Firebase MessagingDelegate (delayed): ", Class::visibleClassOf(delegate).name());
  // A delegate that came late is only swapped: one that does not want tokens gets no method.
  swapIfPresent(Row::fcmToken, delegate);
}

void ZibSwizzleManager::lookAgain(double seconds, void (ZibSwizzleManager::*retry)()) {
  zib::mainQueue::after(seconds, [weakManager = weak_from_this(), retry] {
    contained("the second look for a delegate", [&] {
      if (const auto manager = weakManager.lock()) (manager.get()->*retry)();
    });
  });
}

void ZibSwizzleManager::addOrSwap(Row row, zib::objc::id delegate) {
  if (!swapIfPresent(row, delegate)) add(row, Class::visibleClassOf(delegate));
}

bool ZibSwizzleManager::swapIfPresent(Row row, zib::objc::id delegate) {
  // What the runtime would call, even where that belongs to a hidden subclass.
  const Class delegateClass = Class::ofObject(delegate);
  const Method hostMethod = delegateClass.instanceMethod(Selector(at(row).hostSelector));
  if (hostMethod) swap(row, delegateClass, hostMethod);
  return static_cast<bool>(hostMethod);
}

// The host may only inherit the method: then its superclass's own is replaced, for all subclasses.
void ZibSwizzleManager::swap(Row row, Class delegateClass, Method hostMethod) {
  const Interception& interception = at(row);
  const zib::objc::IMP original = hostMethod.implementation();
  const zib::objc::IMP interceptor = interceptorMethod(interception).implementation();
  // On a class that is intercepted already there is nothing to save: saving the interceptor would
  // make it forward to itself.
  if (original != interceptor) {
    remember(row, delegateClass.ownerOf(Selector(interception.hostSelector)), original);
    this->*interception.original = original;
    // Before the method is replaced, so that a callback on another thread is never left without
    // its host.
    this->*interception.didSwap = true;
    hostMethod.setImplementation(interceptor);
  }
  logLine("  ✓ Swapped: ", interception.logName);
}

void ZibSwizzleManager::add(Row row, Class delegateClass) {
  const Interception& interception = at(row);
  const Method interceptor = interceptorMethod(interception);
  remember(row, delegateClass, nullptr);
  delegateClass.addMethod(Selector(interception.hostSelector), interceptor.implementation(),
                          interceptor.typeEncoding());
  logLine("  + Added: ", interception.logName);
}

void ZibSwizzleManager::remember(Row row, Class owner, zib::objc::IMP original) {
  const auto index = static_cast<std::size_t>(row);
  auto& head = installations_[index];
  const Installation made{owner, Selector(at(row).hostSelector), original, head};
  auto& first = firstInstallations_[index];
  head = first ? std::make_unique<const Installation>(made).release() : &first.emplace(made);
}

const ZibSwizzleManager::Installation* ZibSwizzleManager::findInstallation(Row row,
                                                                           Class from) const {
  const Installation* const newest = installations_[static_cast<std::size_t>(row)];
  for (Class cls = from; cls; cls = cls.superclass()) {
    for (const Installation* each = newest; each != nullptr; each = each->next) {
      if (each->owner == cls) return each;
    }
  }
  return nullptr;
}

Method ZibSwizzleManager::interceptorMethod(const Interception& interception) {
  const Method method = runtimeClass().instanceMethod(Selector(interception.interceptorSelector));
  if (!method) {
    std::fprintf(stderr, "ZibMessaging: the interceptor %s is missing\n",
                 interception.interceptorSelector);
    std::abort();
  }
  return method;
}

void ZibSwizzleManager::trackUTMParameters(zib::objc::id url, std::string_view text) {
  if (!mayHaveUTMParameters(text)) return;
  const auto opened = zib::URL::retained(url);
  if (!opened) return;
  // By name, so that the line is the same for the same parameters.
  std::map<std::string, std::string> parameters;
  for (zib::QueryItem& item : opened->queryItems()) {
    if (item.name.starts_with("utm_")) {
      parameters[std::move(item.name)] = std::move(item.value).value_or("");
    }
  }
  if (parameters.empty()) return;
  std::string line = "   📊 UTM parameters: [";
  for (const auto& [name, value] : parameters) {
    if (line.back() != '[') line.append(", ");
    appendQuoted(line, name);
    line.append(": ");
    appendQuoted(line, value);
  }
  logLine(line.append("]"));
}
