#include "Benchmarks/Device.h"

#include <dlfcn.h>

#include <array>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using Replace = zib::objc::IMP(objc_method*, zib::objc::IMP);

Replace* runtimesOwn() {
  static auto* const replace =
      reinterpret_cast<Replace*>(::dlsym(RTLD_NEXT, "method_setImplementation"));
  return replace;
}

}  // namespace

// The runtime's own, in place of the simulator's, which goes through all classes to renew dispatch
// tables: that would be most of what configure() costs, and no phone does it.
extern "C" zib::objc::IMP method_setImplementation(objc_method* method, zib::objc::IMP function) {
  return runtimesOwn()(method, function);
}

namespace bench {
namespace {

using zib::Block;
using zib::BlockLayout;
using zib::Class;
using zib::classNamed;
using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

// An object of the classes below: two properties at most.
struct PlainObject {
  objc_class* isa;
  std::array<id, 2> properties;
};

PlainObject& plain(id object) { return *reinterpret_cast<PlainObject*>(object); }

template <std::size_t Slot>
id get(id self, SEL) {
  return plain(self).properties[Slot];
}

template <std::size_t Slot>
void set(id self, SEL, id value) {
  plain(self).properties[Slot] = value;
}

Class registerPlain(const char* name, std::initializer_list<const char*> getters,
                    Class superclass = classNamed<"NSObject">()) {
  objc_class* const raw = zib::objc::allocateClassPair(superclass.raw(), name, 0);
  if (superclass == classNamed<"NSObject">()) {
    sim::addPointerVariable(raw, "first", "@");
    sim::addPointerVariable(raw, "second", "@");
  }
  zib::objc::registerClassPair(raw);
  const Class cls(raw);
  if (getters.size() > 0) sim::installMethod(cls, *getters.begin(), &get<0>);
  if (getters.size() > 1) sim::installMethod(cls, *(getters.begin() + 1), &get<1>);
  return cls;
}

Object makePlain(Class cls, const Object& first = {}, const Object& second = {}) {
  Object object = Object::adopted(send<id>(cls.object(), selector<"new">()));
  plain(object.raw()).properties = {zib::objc::retain(first.raw()),
                                    zib::objc::retain(second.raw())};
  return object;
}

struct Device {
  Object bundlePath;
  Object application;
  Object scenes;
  Object scene;
  Object center;
  Object messaging;
  Hosts hosts;
  unsigned long hostCalls = 0;
  unsigned long completions = 0;
};

Device& device() {
  static auto* const device = new Device();  // NOLINT: lives as long as the process
  return *device;
}

id bundlePath(id, SEL) { return device().bundlePath.raw(); }
id sharedApplication(id, SEL) { return device().application.raw(); }
id connectedScenes(id, SEL) { return device().scenes.raw(); }
id currentCenter(id, SEL) { return device().center.raw(); }
id sharedMessaging(id, SEL) { return device().messaging.raw(); }

void openURL(id, SEL, id, id, BlockLayout* completion) {
  Block<void(BOOL)>::call(completion, BOOL{1});
}

void hostDidRegister(id, SEL, id, id) { ++device().hostCalls; }
void hostDidFail(id, SEL, id, id) { ++device().hostCalls; }
BOOL hostOpenURL(id, SEL, id, id, id) {
  ++device().hostCalls;
  return BOOL{1};
}
void hostOpenURLContexts(id, SEL, id, id) { ++device().hostCalls; }
void hostWillPresent(id, SEL, id, id, BlockLayout* completion) {
  ++device().hostCalls;
  constexpr UInteger bannerAndSound = 18;
  Block<void(UInteger)>::call(completion, bannerAndSound);
}
void hostDidReceive(id, SEL, id, id, BlockLayout* completion) {
  ++device().hostCalls;
  Block<void()>::call(completion);
}
void hostToken(id, SEL, id, id) { ++device().hostCalls; }

Object makeHost(const char* className) {
  const Class cls =
      zib::ClassBuilder(className, classNamed<"NSObject">())
          .method("application:didRegisterForRemoteNotificationsWithDeviceToken:", &hostDidRegister)
          .method("application:didFailToRegisterForRemoteNotificationsWithError:", &hostDidFail)
          .method("application:openURL:options:", &hostOpenURL)
          .method("scene:openURLContexts:", &hostOpenURLContexts)
          .method("userNotificationCenter:willPresentNotification:withCompletionHandler:",
                  &hostWillPresent)
          .method("userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
                  &hostDidReceive)
          .method("messaging:didReceiveRegistrationToken:", &hostToken)
          .registerClass();
  return Object::adopted(send<id>(cls.object(), selector<"new">()));
}

void setUpUIKit() {
  const Class application = registerPlain("UIApplication", {"delegate"});
  sim::installMethod(application, "connectedScenes", &connectedScenes);
  sim::installMethod(application, "openURL:options:completionHandler:", &openURL);
  sim::installClassMethod(application, "sharedApplication", &sharedApplication);
  device().application = makePlain(application);
  const Class scene = registerPlain("UIScene", {"delegate"});
  device().scene = makePlain(registerPlain("UIWindowScene", {}, scene));
  device().scenes = Object::retained(
      send<id>(classNamed<"NSSet">().object(), selector<"setWithObject:">(), device().scene.raw()));
}

void setUpUserNotifications() {
  registerPlain("UNNotificationContent", {"userInfo"});
  registerPlain("UNNotificationRequest", {"content"});
  registerPlain("UNNotification", {"request"});
  registerPlain("UNNotificationResponse", {"notification", "actionIdentifier"});
  const Class center = registerPlain("UNUserNotificationCenter", {"delegate"});
  sim::installMethod(center, "setDelegate:", &set<0>);
  sim::installClassMethod(center, "currentNotificationCenter", &currentCenter);
  device().center = makePlain(center);
}

void setUpFirebase() {
  const Class messaging = registerPlain("FIRMessaging", {"delegate"});
  sim::installMethod(messaging, "setDelegate:", &set<0>);
  sim::installClassMethod(messaging, "messaging", &sharedMessaging);
  device().messaging = makePlain(messaging);
}

}  // namespace

void setUpDevice() {
  const zib::AutoreleasePool pool;
  runtimesOwn();  // looked up before anything is counted
  sim::foundation::install();
  sim::foundation::setSystemVersion(17, 0);
  device().bundlePath = zib::makeString("/private/var/containers/Bundle/Application/App.app");
  sim::installMethod(classNamed<"NSBundle">(), "bundlePath", &bundlePath);
  setUpUIKit();
  setUpUserNotifications();
  setUpFirebase();
  device().hosts = {makeHost("InterceptedHost"), makeHost("FloorHost"), makeHost("BareHost")};
}

const Hosts& hosts() { return device().hosts; }

void setDelegate(const Object& host) {
  for (const Object* owner :
       {&device().application, &device().scene, &device().center, &device().messaging}) {
    plain(owner->raw()).properties[0] = host.raw();
  }
}

id application() { return device().application.raw(); }
id center() { return device().center.raw(); }
id messaging() { return device().messaging.raw(); }

Object makeNotification(const Object& userInfo) {
  return makePlain(classNamed<"UNNotification">(),
                   makePlain(classNamed<"UNNotificationRequest">(),
                             makePlain(classNamed<"UNNotificationContent">(), userInfo)));
}

Object makeResponse(const Object& notification, std::string_view action) {
  return makePlain(classNamed<"UNNotificationResponse">(), notification, zib::makeString(action));
}

void drainMainQueue() { sim::Scheduler::shared().drain(); }

unsigned long hostCalls() { return device().hostCalls; }
unsigned long completions() { return device().completions; }

BlockLayout* presentationCompletion() {
  static const auto block = Block<void(UInteger)>::from([](UInteger) { ++device().completions; });
  return block.raw();
}

BlockLayout* responseCompletion() {
  static const auto block = Block<void()>::from([] { ++device().completions; });
  return block.raw();
}

}  // namespace bench
