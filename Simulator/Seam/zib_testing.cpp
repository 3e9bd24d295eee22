#include "Simulator/Seam/zib_testing.h"

#include "ZibMessaging/ZibSwizzleManager.h"

bool zib_testing_is_swizzling_enabled(void) {
  return ZibSwizzleManager::shared().isSwizzlingEnabled();
}

void zib_testing_set_swizzling_enabled(bool is_enabled) {
  ZibSwizzleManager::shared().setSwizzlingEnabled(is_enabled);
}

void zib_testing_setup_auto_swizzling(void) { ZibSwizzleManager::shared().setupAutoSwizzling(); }
