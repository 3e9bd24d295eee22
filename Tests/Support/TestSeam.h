// What tests may do to the module's singletons, and see of their private state.

#pragma once

#include <memory>

#include "ZibMessaging/Private/AddOrSwap.h"
#include "ZibMessaging/Private/Installation.h"
#include "ZibMessaging/Private/Interceptors.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibMessaging/ZibSwizzleManager.h"

struct ZibTestSeam {
  using Row = zib::Row;

  // A fresh instance takes the place of the shared one, which is destroyed: what holds it weakly
  // finds it gone.
  static void replaceMessaging() { ZibMessaging::slot() = ZibMessaging::make(); }
  static void replacePushConfig() { ZibPushConfig::slot() = ZibPushConfig::make(); }
  static void replaceSwizzleManager() { ZibSwizzleManager::slot() = ZibSwizzleManager::make(); }

  static bool hasReceivedAPNSToken() { return ZibMessaging::shared().hasReceivedAPNSToken_; }
  static bool swizzlingConfigured() { return ZibMessaging::shared().swizzlingConfigured_; }
  static bool hasSwizzled() { return ZibSwizzleManager::shared().hasSwizzled_; }

  // The fields of the row: the host's implementation that was saved last, and whether there is one.
  static zib::objc::IMP original(Row row) { return zib::latestOriginal(row); }
  static bool didSwap(Row row) { return original(row) != nullptr; }
  static const char* hostSelector(Row row) { return zib::interceptionOf(row).hostSelector; }
  static zib::objc::IMP interceptor(Row row) {
    return zib::interceptorMethod(row).implementation();
  }
  // What the pass does for one method of one delegate.
  static void runAddOrSwap(Row row, zib::objc::id delegate) {
    zib::addOrSwap(row, delegate, zib::Class::visibleClassOf(delegate));
  }
  static zib::Class swizzleManagerClass() { return zib::interceptorClass(); }
};
