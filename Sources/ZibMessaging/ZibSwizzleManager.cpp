#include "ZibMessaging/ZibSwizzleManager.h"

#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/Deferred.h"
#include "ZibMessaging/Private/DelegateLook.h"
#include "ZibMessaging/Private/DelegateWatch.h"
#include "ZibMessaging/Private/Interceptors.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/Recording.h"
#include "ZibPlatform/Dispatch/MainQueue.h"
#include "ZibPlatform/Foundation/Process.h"

using zib::contained;
using zib::DelegateLook;
using zib::logLine;

ZibSwizzleManager& ZibSwizzleManager::shared() noexcept { return instance(); }

// With the runtime's class, so that it is there for whoever looks for it by name.
ZibSwizzleManager::ZibSwizzleManager(Key) { zib::interceptorClass(); }

void ZibSwizzleManager::setupAutoSwizzling() noexcept {
  const zib::RecordedCall call("setupAutoSwizzling");
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

void ZibSwizzleManager::keepWatch() noexcept {
  if (!hasSwizzled_ || isWatching_.exchange(true)) return;
  auto watch = [] { contained("watching for delegates", &zib::watchForDelegates); };
  if (zib::isMainThread()) {
    watch();
  } else {
    zib::mainQueue::sync(watch);
  }
}

// A watch has found by now what there was to find; what it may have missed it takes up here.
void ZibSwizzleManager::lookAgain(const DelegateLook& look) {
  if (isWatching_) {
    lookForNewDelegates(look);
  } else {
    lookAgainForDelegates(look);
  }
}

void ZibSwizzleManager::runPass() {
  // Again, since another thread's pass may have run while this one waited for the main queue.
  if (hasSwizzled_) {
    logLine("⚠️ Swizzling already performed");
    return;
  }
  if (!zib::interceptorClass()) {
    zib::logError("ZibMessaging: the class name \"ZibSwizzleManager\" is taken by something else");
  }
  logLine("🔧 Starting Zib SDK auto-swizzling...");
  // Each on its own, so that what one finds broken costs the others nothing.
  for (const DelegateLook& look : zib::delegateLooks) {
    contained(look.operation, [&] {
      if (!lookForDelegates(look).mayComeLater) return;
      zib::afterWeakly(look.secondLookAfter, weak_from_this(), "the second look for a delegate",
                       [&look](ZibSwizzleManager& manager) { manager.lookAgain(look); });
    });
  }
  hasSwizzled_ = true;
  logLine("✅ Zib SDK swizzling complete!");
}
