// A toolchain for Swift on Linux builds the package without Foundation.
#if __has_include(<UIKit/UIKit.h>)

#include "Private/Ownership.h"

// A block as an object, for what owns objects only.
@interface ZIBURLDelegate : NSObject {
 @public
  void *_block;
}
@end

@implementation ZIBURLDelegate

- (instancetype)initWithBlock:(void *)block {
  self = [super init];
  if (self != nil) _block = _Block_copy(block);
  return self;
}

- (void)dealloc {
  _Block_release(_block);
#if !__has_feature(objc_arc)
  [super dealloc];
#endif
}

@end

static ZIBDeepLinkHandler *sharedHandler;
// A ZIBURLDelegate, retained. None when a host has set another delegate by zib.h or in C++.
static void *heldDelegate;

static bool handle(void *context, id url, zib_text text) {
  @autoreleasepool {
    void *const block = ((__bridge ZIBURLDelegate *)context)->_block;
    return ((__bridge BOOL(^)(NSURL *))block)(url);
  }
}

// The module has let it go: another took its place.
static void isGone(void *context) {
  void *former = NULL;
  @synchronized(sharedHandler) {
    if (heldDelegate == context) {
      former = heldDelegate;
      heldDelegate = NULL;
    }
  }
  // Out of the lock: what the block holds is the host's.
  ZIBRelease(former);
  ZIBRelease(context);
}

@implementation ZIBDeepLinkHandler

+ (void)initialize {
  if (self == [ZIBDeepLinkHandler class]) sharedHandler = [[ZIBDeepLinkHandler alloc] initShared];
}

+ (ZIBDeepLinkHandler *)shared {
  return sharedHandler;
}

- (instancetype)initShared {
  return [super init];
}

- (BOOL (^)(NSURL *))urlDelegate {
  ZIBURLDelegate *delegate;
  @synchronized(self) {
    delegate = ZIB_KEPT_FOR_CALLER((__bridge ZIBURLDelegate *)heldDelegate);
  }
  if (delegate == nil) return nil;
  return (__bridge BOOL(^)(NSURL *))delegate->_block;
}

- (void)setUrlDelegate:(BOOL (^)(NSURL *))urlDelegate {
  ZIBURLDelegate *const added =
      urlDelegate == nil
          ? nil
          : ZIB_AUTORELEASED([[ZIBURLDelegate alloc] initWithBlock:(__bridge void *)urlDelegate]);
  void *former;
  @synchronized(self) {
    former = heldDelegate;
    heldDelegate = ZIBRetained(added);
    zib_deep_link_handler_set_url_delegate(added == nil ? NULL : handle, ZIBRetained(added),
                                           isGone);
  }
  // Out of the lock: what the block holds is the host's.
  ZIBRelease(former);
}

- (BOOL)handleNotificationURLFromUserInfo:(NSDictionary *)userInfo {
  return zib_deep_link_handler_handle_notification_url(userInfo);
}

- (BOOL)handleURL:(NSURL *)url source:(NSString *)source {
  const zib_text text = ZIBTextCopy(source);
  const bool isRecorded = zib_deep_link_handler_handle_url(url, text);
  zib_text_free(text);
  return isRecorded;
}

@end

#endif
