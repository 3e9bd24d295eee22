// What tests may do to the module's singletons, and see of their private state.

#pragma once

#include <memory>

#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibMessaging/ZibSwizzleManager.h"

struct ZibTestSeam {
  using Row = ZibSwizzleManager::Row;

  // A fresh instance takes the place of the shared one, which is destroyed: what holds it weakly
  // finds it gone.
  static void replaceMessaging() {
    ZibMessaging::slot() = std::make_shared<ZibMessaging>(ZibMessaging::Key());
  }
  static void replacePushConfig() {
    ZibPushConfig::slot() = std::make_shared<ZibPushConfig>(ZibPushConfig::Key());
  }
  static void replaceSwizzleManager() {
    ZibSwizzleManager::slot() = std::make_shared<ZibSwizzleManager>(ZibSwizzleManager::Key());
  }

  static bool hasReceivedAPNSToken() { return ZibMessaging::shared().hasReceivedAPNSToken_; }
  static bool swizzlingConfigured() { return ZibMessaging::shared().swizzlingConfigured_; }
  static bool hasSwizzled() { return ZibSwizzleManager::shared().hasSwizzled_; }

  static zib::objc::IMP original(Row row) {
    return ZibSwizzleManager::shared().*ZibSwizzleManager::at(row).original;
  }
  static bool didSwap(Row row) {
    return ZibSwizzleManager::shared().*ZibSwizzleManager::at(row).didSwap;
  }
  static const char* hostSelector(Row row) { return ZibSwizzleManager::at(row).hostSelector; }
  static zib::objc::IMP interceptor(Row row) {
    return ZibSwizzleManager::interceptorMethod(ZibSwizzleManager::at(row)).implementation();
  }
  // What the pass does for one method of one delegate.
  static void runAddOrSwap(Row row, zib::objc::id delegate) {
    ZibSwizzleManager::shared().addOrSwap(row, delegate);
  }
  static zib::Class swizzleManagerClass() { return ZibSwizzleManager::runtimeClass(); }
};
