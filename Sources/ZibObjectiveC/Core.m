// The core library, as an object of the host's language.

// A toolchain for Swift on Linux builds the package without Foundation.
#if __has_include(<UIKit/UIKit.h>)

#include "Private/Core.h"

#include "Private/Ownership.h"

static bool config(void *core, zib_config *config) {
  @autoreleasepool {
    ZIBConfig *const given = ((__bridge id<ZIBCore>)core).config;
    if (given == nil) return false;
    config->auto_swizzling_enabled = given.isAutoSwizzlingEnabled;
    return true;
  }
}

static zib_text copyPushConfigEndpoint(void *core) {
  @autoreleasepool {
    return ZIBTextCopy(((__bridge id<ZIBCore>)core).pushConfigEndpoint);
  }
}

static void logLine(void *core, zib_text line) {
  @autoreleasepool {
    [(__bridge id<ZIBCore>)core log:ZIBString(line)];
  }
}

static void logFailure(void *core, zib_text line, const zib_error *error) {
  @autoreleasepool {
    [(__bridge id<ZIBCore>)core logFailure:ZIBString(line)
                                     error:error == NULL ? nil : (NSError *)error->object];
  }
}

static void track(void *core, zib_text schema, id data) {
  @autoreleasepool {
    [(__bridge id<ZIBCore>)core trackSelfDescribingEventWithSchema:ZIBString(schema) data:data];
  }
}

static void registerPushToken(void *core, zib_text token) {
  @autoreleasepool {
    [(__bridge id<ZIBCore>)core registerPushToken:ZIBString(token)];
  }
}

static void savePushPermission(void *core, bool granted) {
  @autoreleasepool {
    [(__bridge id<ZIBCore>)core savePushPermission:granted];
  }
}

static void saveFCMToken(void *core, zib_text token) {
  @autoreleasepool {
    [(__bridge id<ZIBCore>)core saveFCMToken:ZIBString(token)];
  }
}

BOOL ZIBInstallCore(id<ZIBCore> core) {
  const zib_core table = {
      .size = sizeof table,
      .context = ZIBRetained(core),
      .release = ZIBRelease,
      .config = config,
      .copy_push_config_endpoint = copyPushConfigEndpoint,
      .log = logLine,
      .error = logFailure,
      .track_self_describing_event = track,
      .register_push_token = registerPushToken,
      .save_push_permission = savePushPermission,
      .save_fcm_token = saveFCMToken,
  };
  const bool isInstalled = zib_core_install(core == nil ? NULL : &table);
  if (!isInstalled) ZIBRelease(table.context);
  return isInstalled;
}

@implementation ZIBConfig

- (instancetype)initWithAutoSwizzlingEnabled:(BOOL)enabled {
  self = [super init];
  if (self != nil) _autoSwizzlingEnabled = enabled;
  return self;
}

- (BOOL)isAutoSwizzlingEnabled {
  return _autoSwizzlingEnabled;
}

@end

#endif
