// A toolchain for Swift on Linux builds the package without Foundation.
#if __has_include(<UIKit/UIKit.h>)

#include "Private/Ownership.h"

#include <stdlib.h>

static ZIBPushConfig *sharedConfig;

// The blocks of one flow.
struct Handlers {
  void *firebaseConfig;
  void *completion;
};

static void handleFirebaseConfig(void *context, id config) {
  @autoreleasepool {
    void *const block = ((struct Handlers *)context)->firebaseConfig;
    ((__bridge void (^)(NSDictionary *))block)(config);
  }
}

static void complete(void *context, bool started) {
  @autoreleasepool {
    void *const block = ((struct Handlers *)context)->completion;
    ((__bridge void (^)(BOOL))block)(started);
  }
}

static void releaseHandlers(void *context) {
  struct Handlers *const handlers = context;
  if (handlers->firebaseConfig != NULL) _Block_release(handlers->firebaseConfig);
  if (handlers->completion != NULL) _Block_release(handlers->completion);
  free(handlers);
}

@implementation ZIBPushConfig

+ (void)initialize {
  if (self == [ZIBPushConfig class]) sharedConfig = [[ZIBPushConfig alloc] initShared];
}

+ (ZIBPushConfig *)shared {
  return sharedConfig;
}

- (instancetype)initShared {
  return [super init];
}

- (void)configurePushWithApplication:(UIApplication *)application
                      configEndpoint:(NSString *)configEndpoint
               firebaseConfigHandler:
                   (void (^)(NSDictionary<NSString *, id> *config))firebaseConfigHandler
                          completion:(void (^)(BOOL started))completion {
  struct Handlers *const handlers = malloc(sizeof *handlers);
  handlers->firebaseConfig = _Block_copy((__bridge void *)firebaseConfigHandler);
  handlers->completion = _Block_copy((__bridge void *)completion);
  const zib_text endpoint = ZIBTextCopy(configEndpoint);
  zib_push_config_configure_push(application, endpoint,
                                 firebaseConfigHandler == nil ? NULL : handleFirebaseConfig,
                                 completion == nil ? NULL : complete, handlers, releaseHandlers);
  zib_text_free(endpoint);
}

- (void)registerForPushSimpleWithApplication:(UIApplication *)application {
  zib_push_config_register_for_push_simple(application);
}

- (NSString *)savedFirebasePlistPath {
  return ZIBStringTaken(zib_push_config_copy_saved_firebase_plist_path());
}

@end

#endif
