// What the module shows the object runtime, and what it keeps of the host's.

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "Tests/Support/Delegates.h"
#include "Tests/Support/Device.h"
#include "Tests/Support/Host.h"
#include "Tests/Support/TestSeam.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace {

using test::Device;
using zib::Class;
using zib::Object;
using Row = ZibTestSeam::Row;

constexpr Row everyRow[] = {Row::didRegister, Row::didFailRegister, Row::openURL, Row::sceneOpenURL,
                            Row::willPresent, Row::didReceive,      Row::fcmToken};

std::set<std::string> methodsOf(Class cls) {
  unsigned int count = 0;
  objc_method** const methods = class_copyMethodList(cls.raw(), &count);
  std::set<std::string> names;
  for (unsigned int index = 0; index < count; ++index) {
    names.insert(zib::objc::nameOfSelector(method_getName(methods[index])));
  }
  std::free(methods);  // NOLINT(cppcoreguidelines-no-malloc): the runtime's memory
  return names;
}

std::string typesOf(Class cls, const char* selector) {
  return cls.instanceMethod(zib::Selector(selector)).typeEncoding();
}

TEST(RuntimeSurfaceTest, ZibMessagingAddsFourSelectors) {
  const Device device;
  const Class cls = Class::ofObject(ZibMessaging::runtimeObject());
  EXPECT_STREQ(cls.name(), "ZibMessaging");
  EXPECT_EQ(cls.superclass(), zib::classNamed<"NSObject">());
  EXPECT_EQ(methodsOf(cls),
            (std::set<std::string>{
                "init", "userNotificationCenter:willPresentNotification:withCompletionHandler:",
                "userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
                "messaging:didReceiveRegistrationToken:"}));
  EXPECT_TRUE(methodsOf(sim::metaclassOf(cls)).empty());
  EXPECT_EQ(ZibMessaging::runtimeObject(), ZibMessaging::runtimeObject());
}

TEST(RuntimeSurfaceTest, ZibSwizzleManagerHasTheSevenInterceptors) {
  const Device device;
  const Class cls = ZibTestSeam::swizzleManagerClass();
  EXPECT_STREQ(cls.name(), "ZibSwizzleManager");
  EXPECT_EQ(cls.superclass(), zib::classNamed<"NSObject">());
  EXPECT_EQ(methodsOf(cls),
            (std::set<std::string>{"zib_didRegister:deviceToken:", "zib_didFailRegister:error:",
                                   "zib_openURL:url:options:", "zib_scene:openURLContexts:",
                                   "zib_willPresent:notification:completionHandler:",
                                   "zib_didReceive:response:completionHandler:",
                                   "zib_messaging:didReceiveRegistrationToken:"}));
  EXPECT_EQ(typesOf(cls, "zib_didRegister:deviceToken:"), "v32@0:8@16@24");
  EXPECT_EQ(typesOf(cls, "zib_didFailRegister:error:"), "v32@0:8@16@24");
  EXPECT_EQ(typesOf(cls, "zib_openURL:url:options:"), "C40@0:8@16@24@32");
  EXPECT_EQ(typesOf(cls, "zib_scene:openURLContexts:"), "v32@0:8@16@24");
  EXPECT_EQ(typesOf(cls, "zib_willPresent:notification:completionHandler:"), "v40@0:8@16@24@?32");
  EXPECT_EQ(typesOf(cls, "zib_didReceive:response:completionHandler:"), "v40@0:8@16@24@?32");
  EXPECT_EQ(typesOf(cls, "zib_messaging:didReceiveRegistrationToken:"), "v32@0:8@16@24");
}

TEST(RuntimeSurfaceTest, AddedMethodsHaveTheInterceptorsTypes) {
  const Device device;
  const Object host = test::makeHost("SurfaceHost", {});
  test::useForEverything(host);
  ZibSwizzleManager::shared().setupAutoSwizzling();
  const Class cls = Class::ofObject(host.raw());
  EXPECT_EQ(methodsOf(cls).size(), 7U);
  EXPECT_EQ(typesOf(cls, "application:openURL:options:"), "C40@0:8@16@24@32");
  for (const Row row : everyRow) {
    const auto method = cls.instanceMethod(zib::Selector(ZibTestSeam::hostSelector(row)));
    ASSERT_TRUE(method);
    EXPECT_EQ(method.implementation(), ZibTestSeam::interceptor(row));
    EXPECT_FALSE(ZibTestSeam::didSwap(row));
    EXPECT_EQ(ZibTestSeam::original(row), nullptr);
  }
}

TEST(RuntimeSurfaceTest, SwappedMethodsAreSaved) {
  const Device device;
  const Object host = test::makeHost("SurfaceHost", test::everyHostMethod);
  const Class cls = Class::ofObject(host.raw());
  std::vector<zib::objc::IMP> before;
  for (const Row row : everyRow) {
    before.push_back(
        cls.instanceMethod(zib::Selector(ZibTestSeam::hostSelector(row))).implementation());
    EXPECT_FALSE(ZibTestSeam::didSwap(row));
    EXPECT_EQ(ZibTestSeam::original(row), nullptr);
  }
  test::useForEverything(host);
  EXPECT_FALSE(ZibTestSeam::hasSwizzled());
  ZibSwizzleManager::shared().setupAutoSwizzling();
  EXPECT_TRUE(ZibTestSeam::hasSwizzled());
  for (std::size_t index = 0; index < std::size(everyRow); ++index) {
    const Row row = everyRow[index];
    EXPECT_TRUE(ZibTestSeam::didSwap(row));
    EXPECT_EQ(ZibTestSeam::original(row), before[index]);
    EXPECT_EQ(cls.instanceMethod(zib::Selector(ZibTestSeam::hostSelector(row))).implementation(),
              ZibTestSeam::interceptor(row));
  }
  EXPECT_EQ(methodsOf(cls).size(), 7U);
}

TEST(RuntimeSurfaceTest, ADisabledPassLeavesTheHostAlone) {
  const Device device;
  const Object host = test::makeHost("SurfaceHost", {});
  test::useForEverything(host);
  ZibSwizzleManager::shared().setSwizzlingEnabled(false);
  ZibSwizzleManager::shared().setupAutoSwizzling();
  EXPECT_EQ(device.infoLines(), std::vector<std::string>{"⚠️ Swizzling is DISABLED"});
  EXPECT_FALSE(ZibTestSeam::hasSwizzled());
  EXPECT_TRUE(methodsOf(Class::ofObject(host.raw())).empty());
}

TEST(RuntimeSurfaceTest, AnExtensionIsLeftAloneEvenWhenDisabled) {
  const Device device;
  sim::foundation::setMainBundlePath("/Applications/HostApp.app/PlugIns/Share.appex");
  ZibSwizzleManager::shared().setSwizzlingEnabled(false);
  ZibSwizzleManager::shared().setupAutoSwizzling();
  EXPECT_EQ(device.infoLines(),
            std::vector<std::string>{"ℹ️ Running in app extension - swizzling not applicable"});
  EXPECT_FALSE(ZibTestSeam::hasSwizzled());
}

TEST(RuntimeSurfaceTest, ThePassRunsOnTheMainThreadWhoeverAsks) {
  const Device device;
  test::useForEverything(test::makeHost("SurfaceHost", test::everyHostMethod));
  sim::Scheduler::shared().runOn("worker", [] {
    ZibSwizzleManager::shared().setupAutoSwizzling();
    EXPECT_TRUE(ZibTestSeam::hasSwizzled()) << "returned before the pass had run";
    ZibSwizzleManager::shared().setupAutoSwizzling();
  });
  const auto lines = device.infoLines();
  const auto threads = device.fields("log", "thread");
  ASSERT_EQ(lines.size(), threads.size());
  for (std::size_t index = 0; index + 1 < lines.size(); ++index) {
    EXPECT_EQ(threads[index], "main") << lines[index];
  }
  EXPECT_EQ(lines.front(), "🔧 Starting Zib SDK auto-swizzling...");
  EXPECT_EQ(lines.at(lines.size() - 2), "✅ Zib SDK swizzling complete!");
  EXPECT_EQ(lines.back(), "⚠️ Swizzling already performed");
}

TEST(RuntimeSurfaceTest, ConfiguringIsDoneOnce) {
  const Device device;
  EXPECT_FALSE(ZibTestSeam::swizzlingConfigured());
  EXPECT_FALSE(ZibTestSeam::hasReceivedAPNSToken());
  ZibMessaging::shared().configure(Device::application());
  EXPECT_TRUE(ZibTestSeam::swizzlingConfigured());
  ZibMessaging::shared().setPushToken(zib::Bytes{1});
  EXPECT_TRUE(ZibTestSeam::hasReceivedAPNSToken());
}

zib::objc::id name(zib::objc::id, zib::objc::SEL) { return nullptr; }
void setName(zib::objc::id, zib::objc::SEL, zib::objc::id /*value*/) {}
void observed(zib::objc::id, zib::objc::SEL, zib::objc::id, zib::objc::id, zib::objc::id, void*) {}

// Somebody observes the delegate when the pass runs, and stops later: the hidden class that this
// needs comes and goes, the interception stays.
TEST(RuntimeSurfaceTest, AnObservedDelegateIsInterceptedOnItsOwnClass) {
  const Device device;
  const Object base = test::makeHost("SurfaceHost", {sim::HostMethod::didRegister});
  const Class cls = zib::ClassBuilder("SurfaceObserved", Class::ofObject(base.raw()))
                        .method("name", &name)
                        .method("setName:", &setName)
                        .registerClass();
  const Class observerClass =
      zib::ClassBuilder("SurfaceObserver", zib::classNamed<"NSObject">())
          .method("observeValueForKeyPath:ofObject:change:context:", &observed)
          .registerClass();
  const auto make = [](Class of) {
    return Object::adopted(zib::send<zib::objc::id>(of.object(), zib::selector<"new">()));
  };
  const Object host = make(cls);
  const Object observer = make(observerClass);
  const Object key = zib::makeString("name");
  zib::send<void>(host.raw(), zib::selector<"addObserver:forKeyPath:options:context:">(),
                  observer.raw(), key.raw(), zib::objc::UInteger{1}, static_cast<void*>(nullptr));
  ASSERT_NE(Class::ofObject(host.raw()), cls);
  sim::uikit::setAppDelegate(host);
  ZibSwizzleManager::shared().setupAutoSwizzling();
  EXPECT_EQ(device.countOfLine("📱 Swizzling AppDelegate: SurfaceObserved"), 1U);
  const Object token = zib::makeData(zib::Bytes{1});
  test::deviceToken(host.raw(), token.raw());
  zib::send<void>(host.raw(), zib::selector<"removeObserver:forKeyPath:">(), observer.raw(),
                  key.raw());
  test::deviceToken(host.raw(), token.raw());
  EXPECT_EQ(device.countOfLine("📲 [INTERCEPTED] didRegisterForRemoteNotifications"), 2U);
  EXPECT_EQ(device.entries("host").size(), 2U);
  EXPECT_TRUE(test::openURL(host.raw(), zib::URL::parse("app://open")->native()));
}

}  // namespace
