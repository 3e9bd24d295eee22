// What the face's files share: objects and texts across zib.h, with ARC (Apple's platforms) and
// without (Linux, whose object runtime has none).

#import "ZibObjectiveC.h"
#include "zib.h"

#if defined(__APPLE__) && !__has_feature(objc_arc)
#error "compile the face with ARC: without, it would hold delegates unsafely"
#endif

// Blocks go through the block runtime and never get a message: GNUstep's are no objects.
extern void *_Block_copy(const void *block);
extern void _Block_release(const void *block);

#if __has_feature(objc_arc)
#define ZIB_AUTORELEASED(object) (object)
#define ZIB_KEPT_FOR_CALLER(object) (object)
#define ZIB_OWNED(object) (object)
#else
#define ZIB_AUTORELEASED(object) [(object) autorelease]
#define ZIB_KEPT_FOR_CALLER(object) [[(object) retain] autorelease]
#define ZIB_OWNED(object) [(object) retain]  // for an instance variable
#endif

// The reference that a context of zib.h holds, and its end.
static inline void *ZIBRetained(id object) {
#if __has_feature(objc_arc)
  return (__bridge_retained void *)object;
#else
  return (void *)[object retain];
#endif
}

static inline void ZIBRelease(void *context) {
#if __has_feature(objc_arc)
  (void)(__bridge_transfer id)context;
#else
  [(id)context release];
#endif
}

// Nil for no text.
static inline NSString *ZIBString(zib_text text) {
  return ZIB_AUTORELEASED(zib_string_create(text));
}

// The same of a text that a function of zib.h has copied.
static inline NSString *ZIBStringTaken(zib_text copied) {
  NSString *const string = ZIBString(copied);
  zib_text_free(copied);
  return string;
}

// To be freed. No text for nil.
static inline zib_text ZIBTextCopy(NSString *string) {
  return string == nil ? (zib_text){NULL, 0} : zib_string_copy(string);
}
