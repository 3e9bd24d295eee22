#include "Hosts.h"

#include <dispatch/dispatch.h>
#include <objc/runtime.h>

typedef void (^OptionsCompletion)(NSUInteger options);
typedef void (^Completion)(void);
typedef void (*Setter)(id self, SEL _cmd, id value);
// What a function is cast by where the types are meant to differ.
typedef void (*AnyFunction)(void);

static void did(const char *className, const char *method) {
  hostDid([[NSString stringWithFormat:@"%s %s", className, method] UTF8String]);
}

@interface Whole : NSObject
@end

@implementation Whole

- (void)application:(id)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)token {
  did("Whole", "didRegister");
}

- (void)application:(id)application
    didFailToRegisterForRemoteNotificationsWithError:(NSError *)error {
  did("Whole", "didFail");
}

- (BOOL)application:(id)application openURL:(NSURL *)url options:(NSDictionary *)options {
  did("Whole", "openURL");
  return NO;
}

- (void)scene:(id)scene openURLContexts:(NSSet *)contexts {
  did("Whole", "openURLContexts");
}

- (void)userNotificationCenter:(id)center
       willPresentNotification:(id)notification
         withCompletionHandler:(OptionsCompletion)completionHandler {
  did("Whole", "willPresent");
  completionHandler(5);
}

- (void)userNotificationCenter:(id)center
    didReceiveNotificationResponse:(id)response
             withCompletionHandler:(Completion)completionHandler {
  did("Whole", "didReceive");
  completionHandler();
}

- (void)messaging:(id)messaging didReceiveRegistrationToken:(NSString *)token {
  did("Whole", "token");
}

@end

@interface BaseScene : NSObject
@end

@implementation BaseScene
- (void)scene:(id)scene openURLContexts:(NSSet *)contexts {
  did("BaseScene", [[NSString stringWithFormat:@"%d", (int)contexts.count] UTF8String]);
}
@end

@interface SameScene : BaseScene
@end

@implementation SameScene
- (void)scene:(id)scene openURLContexts:(NSSet *)contexts {
  did("SameScene", "openURLContexts");
  [super scene:scene openURLContexts:contexts];
}
@end

@interface FilteringScene : BaseScene
@end

@implementation FilteringScene
- (void)scene:(id)scene openURLContexts:(NSSet *)contexts {
  did("FilteringScene", "openURLContexts");
  [super scene:scene openURLContexts:[NSSet setWithObject:[contexts anyObject]]];
}
@end

@interface LaterScene : BaseScene
@end

@implementation LaterScene
- (void)callSuper:(id)scene with:(NSSet *)contexts {
  [super scene:scene openURLContexts:contexts];
}
- (void)scene:(id)scene openURLContexts:(NSSet *)contexts {
  did("LaterScene", "openURLContexts");
  NSSet *first = [[NSSet setWithObject:[contexts anyObject]] retain];
  dispatch_async(dispatch_get_main_queue(), ^{
    [self callSuper:scene with:first];
    [first release];
  });
}
@end

@interface AgainScene : BaseScene
@end

@implementation AgainScene
- (void)scene:(id)scene openURLContexts:(NSSet *)contexts {
  did("AgainScene", [[NSString stringWithFormat:@"%d", (int)contexts.count] UTF8String]);
  if (contexts.count > 1) {
    [self scene:scene openURLContexts:[NSSet setWithObject:[contexts anyObject]]];
  }
}
@end

@interface Composite : NSObject {
  NSArray *_children;
}
@end

@interface Child : Composite
@end

@implementation Composite

- (id)init {
  self = [super init];
  if ([self isMemberOfClass:[Composite class]]) {
    _children =
        [[NSArray alloc] initWithObjects:[[Child new] autorelease], [[Child new] autorelease], nil];
  }
  return self;
}

- (void)dealloc {
  [_children release];
  [super dealloc];
}

- (void)userNotificationCenter:(id)center
    didReceiveNotificationResponse:(id)response
             withCompletionHandler:(Completion)completionHandler {
  did(class_getName([self class]), "didReceive");
  __block int left = (int)_children.count;
  if (left == 0) completionHandler();
  for (id child in _children) {
    [child userNotificationCenter:center
        didReceiveNotificationResponse:response
                 withCompletionHandler:^{
                   if (--left == 0) completionHandler();
                 }];
  }
}

@end

@implementation Child
@end

@interface ByHand : NSObject
@end

@implementation ByHand

- (void)userNotificationCenter:(id)center
       willPresentNotification:(id)notification
         withCompletionHandler:(OptionsCompletion)completionHandler {
  did("ByHand", "willPresent");
  handInByHand(notification, 0);
  completionHandler(5);
}

- (void)userNotificationCenter:(id)center
    didReceiveNotificationResponse:(id)response
             withCompletionHandler:(Completion)completionHandler {
  did("ByHand", "didReceive");
  handInByHand(response, 1);
  completionHandler();
}

@end

@interface Partial : NSObject
@end

@implementation Partial
- (void)application:(id)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)token {
  did("Partial", "didRegister");
}
- (BOOL)application:(id)application openURL:(NSURL *)url options:(NSDictionary *)options {
  did("Partial", "openURL");
  return YES;
}
@end

@interface Oldest : NSObject
@end

@implementation Oldest
- (BOOL)application:(id)application handleOpenURL:(NSURL *)url {
  did("Oldest", [[url absoluteString] UTF8String]);
  return NO;
}
@end

@interface Legacy : Oldest
@end

@implementation Legacy
- (BOOL)application:(id)application
              openURL:(NSURL *)url
    sourceApplication:(NSString *)source
           annotation:(id)annotation {
  did("Legacy", [[NSString stringWithFormat:@"%@ from %@ with %@", [url absoluteString], source,
                                            annotation] UTF8String]);
  return NO;
}
@end

@interface OddTypes : NSObject
@end

@implementation OddTypes
- (void)application:(id)application openURL:(NSURL *)url options:(NSDictionary *)options {
  did("OddTypes", "openURL");
}
@end

@interface RootClaiming : NSObject
@end

@implementation RootClaiming
- (Class)class {
  return [NSObject class];
}
@end

@interface Classless : NSObject
@end

@implementation Classless
- (Class)class {
  [NSException raise:@"Planned" format:@"no class"];
  return Nil;
}
- (void)application:(id)application
    didRegisterForRemoteNotificationsWithDeviceToken:(NSData *)token {
  did("Classless", "didRegister");
}
@end

static BOOL raisesForURLs = NO;
static BOOL raisesForPresentation = NO;

void beginToRaise(void) { raisesForURLs = raisesForPresentation = YES; }

@interface Unsure : NSObject
@end

@implementation Unsure
- (BOOL)respondsToSelector:(SEL)selector {
  BOOL *raises = NULL;
  if (selector == @selector(application:openURL:options:)) raises = &raisesForURLs;
  if (selector == @selector(userNotificationCenter:
                           willPresentNotification:withCompletionHandler:)) {
    raises = &raisesForPresentation;
  }
  if (raises && *raises) {
    *raises = NO;
    [NSException raise:@"Planned" format:@"no answer"];
  }
  return [super respondsToSelector:selector];
}
@end

static void tapOfLazy(id self, SEL _cmd, id center, id response, Completion completionHandler) {
  did("Lazy", "didReceive");
  completionHandler();
}

@interface Lazy : NSObject
@end

@implementation Lazy
- (BOOL)respondsToSelector:(SEL)selector {
  if (selector == @selector(userNotificationCenter:
                      didReceiveNotificationResponse:withCompletionHandler:)) {
    class_addMethod([Lazy class], selector, (IMP)(AnyFunction)&tapOfLazy, "v@:@@@?");
  }
  return [super respondsToSelector:selector];
}
@end

// Of an object that is asked only for what it has.
@interface Helped : NSObject {
 @public
  id _target;
}
@end

@implementation Helped
- (void)dealloc {
  [_target release];
  [super dealloc];
}
- (id)forwardingTargetForSelector:(SEL)selector {
  return _target;
}
@end

@interface Forwarding : NSObject {
 @public
  id _target;
}
@end

@implementation Forwarding
- (void)dealloc {
  [_target release];
  [super dealloc];
}
- (BOOL)respondsToSelector:(SEL)selector {
  return [super respondsToSelector:selector] || [_target respondsToSelector:selector];
}
@end

@interface Naming : Forwarding
@end

@implementation Naming
- (id)forwardingTargetForSelector:(SEL)selector {
  return _target;
}
@end

@interface Invoking : Forwarding
@end

@implementation Invoking
- (NSMethodSignature *)methodSignatureForSelector:(SEL)selector {
  NSMethodSignature *signature = [_target methodSignatureForSelector:selector];
  return signature ? signature : [super methodSignatureForSelector:selector];
}
- (void)forwardInvocation:(NSInvocation *)invocation {
  [invocation invokeWithTarget:_target];
}
@end

@interface Proxy : NSProxy {
 @public
  id _target;
}
@end

@implementation Proxy
- (id)init {
  return self;
}
- (void)dealloc {
  [_target release];
  [super dealloc];
}
- (BOOL)respondsToSelector:(SEL)selector {
  return [_target respondsToSelector:selector];
}
- (NSMethodSignature *)methodSignatureForSelector:(SEL)selector {
  return [_target methodSignatureForSelector:selector];
}
- (void)forwardInvocation:(NSInvocation *)invocation {
  [invocation invokeWithTarget:_target];
}
@end

@interface UnsureProxy : Proxy
@end

@implementation UnsureProxy
- (BOOL)respondsToSelector:(SEL)selector {
  return [self methodSignatureForSelector:selector] != nil;
}
- (NSMethodSignature *)methodSignatureForSelector:(SEL)selector {
  if (selector == @selector(userNotificationCenter:
                      didReceiveNotificationResponse:withCompletionHandler:)) {
    [NSException raise:@"Planned" format:@"no signature"];
  }
  return [super methodSignatureForSelector:selector];
}
@end

void setTarget(id delegate, id target) {
  id *place = &((Forwarding *)delegate)->_target;
  if ([delegate isProxy]) place = &((Proxy *)delegate)->_target;
  if (![delegate isProxy] && [delegate isKindOfClass:[Helped class]]) {
    place = &((Helped *)delegate)->_target;
  }
  [target retain];
  [*place release];
  *place = target;
}

id makeHost(const char *className) { return [[objc_lookUpClass(className) alloc] init]; }

// The application of a host's: UIApplication is there at run time only.
static enum RaisingSetter raisesWhen;
static BOOL raisesAfterSuper;
static IMP setDelegateOfSuper = NULL;
static int settings = 0;
static int settingsOfDelegates = 0;

static BOOL raisesAt(id delegate) {
  settings += 1;
  settingsOfDelegates += delegate ? 1 : 0;
  switch (raisesWhen) {
    case forNil:
      return delegate == nil;
    case forDelegate:
      return delegate != nil;
    case theFirstTime:
      return settings == 1;
    case forTheFirstDelegate:
      return delegate != nil && settingsOfDelegates == 1;
    case eachTime:
      return YES;
  }
  return NO;
}

static void setDelegate(id self, SEL _cmd, id delegate) {
  BOOL raises = raisesAt(delegate);
  if (raises && !raisesAfterSuper) [NSException raise:@"Planned" format:@"no setting"];
  ((Setter)(AnyFunction)setDelegateOfSuper)(self, _cmd, delegate);
  if (raises) [NSException raise:@"Planned" format:@"set"];
}

void makeSetterRaise(id application, enum RaisingSetter when, int isAfterSuper) {
  raisesWhen = when;
  raisesAfterSuper = isAfterSuper != 0;
  Class super = object_getClass(application);
  Method method = class_getInstanceMethod(super, @selector(setDelegate:));
  setDelegateOfSuper = method_getImplementation(method);
  Class own = objc_allocateClassPair(super, "HostApplication", 0);
  class_addMethod(own, @selector(setDelegate:), (IMP)(AnyFunction)&setDelegate,
                  method_getTypeEncoding(method));
  objc_registerClassPair(own);
  object_setClass(application, own);
}

// The library: one function for methods of three arguments, whatever the last two are.
static IMP found = NULL;

// With a name that others can see.
id libraryMethod(id self, SEL _cmd, id one, id two, id three);

id libraryMethod(id self, SEL _cmd, id one, id two, id three) {
  did("Library", sel_getName(_cmd));
  return ((id(*)(id, SEL, id, id, id))found)(self, _cmd, one, two, three);
}

void installLibrary(const char *className, const char *selector) {
  Method method = class_getInstanceMethod(objc_lookUpClass(className), sel_registerName(selector));
  IMP before = method_setImplementation(method, (IMP)&libraryMethod);
  if (before != (IMP)&libraryMethod) found = before;
}

static Class visibleClass(id self, SEL _cmd) { return class_getSuperclass(object_getClass(self)); }

void hideBehindLibrary(id delegate, const char *selector) {
  Class visible = object_getClass(delegate);
  SEL name = sel_registerName(selector);
  Method method = class_getInstanceMethod(visible, name);
  found = method_getImplementation(method);
  Class hidden = objc_allocateClassPair(visible, "HiddenByLibrary", 0);
  class_addMethod(hidden, name, (IMP)&libraryMethod, method_getTypeEncoding(method));
  class_addMethod(hidden, @selector(class), (IMP)(AnyFunction)&visibleClass, "#@:");
  objc_registerClassPair(hidden);
  object_setClass(delegate, hidden);
}

static IMP foundSetter = NULL;

static void librarySetter(id self, SEL _cmd, id delegate) {
  did("Library", sel_getName(_cmd));
  ((Setter)(AnyFunction)foundSetter)(self, _cmd, delegate);
}

void installSetterLibrary(const char *className) {
  Method method =
      class_getInstanceMethod(objc_lookUpClass(className), sel_registerName("setDelegate:"));
  IMP before = method_setImplementation(method, (IMP)(AnyFunction)&librarySetter);
  if (before != (IMP)(AnyFunction)&librarySetter) foundSetter = before;
}

void exchangeMethods(const char *oneClass, const char *otherClass, const char *selector) {
  SEL name = sel_registerName(selector);
  Method one = class_getInstanceMethod(objc_lookUpClass(oneClass), name);
  Method other = class_getInstanceMethod(objc_lookUpClass(otherClass), name);
  IMP before = method_getImplementation(one);
  method_setImplementation(one, method_getImplementation(other));
  method_setImplementation(other, before);
}
