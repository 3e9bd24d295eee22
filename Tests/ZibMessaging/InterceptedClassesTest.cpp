// Which host's method an interceptor forwards to, when several delegates share or inherit classes:
// each its own, once, and the module handles the callback once.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tests/Support/Delegates.h"
#include "Tests/Support/Device.h"
#include "Tests/Support/Host.h"
#include "Tests/Support/RowName.h"
#include "Tests/Support/TestSeam.h"
#include "ZibMessaging/ZibSwizzleManager.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace {

using sim::HostMethod;
using test::Device;
using zib::Class;
using zib::Object;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;
using Names = std::vector<std::string>;

constexpr const char* sceneSelector = "scene:openURLContexts:";
constexpr const char* handledLine = "🔗 [INTERCEPTED] scene:openURLContexts: app://open";

struct Call {
  std::string by;
  id receiver;
  std::string selector;
};

std::vector<Call>& calls() {
  static std::vector<Call> calls;
  return calls;
}

Names callers() {
  Names names;
  for (const Call& call : calls()) names.push_back(call.by);
  return names;
}

// A class of scene delegates whose method records itself, and then calls its superclass's if it is
// to. Each level of a hierarchy is a type of its own, since a method does not know its class.
template <int Level>
struct Scene {
  static inline Class cls;
  static inline bool callsSuper = false;

  static void open(id self, SEL selector, id scene, id contexts) {
    calls().push_back({cls.name(), self, zib::objc::nameOfSelector(selector)});
    if (!callsSuper) return;
    const auto inherited = cls.superclass().instanceMethod(zib::Selector(selector));
    if (!inherited) return;
    zib::callImplementation<void>(inherited.implementation(), self, zib::Selector(selector), scene,
                                  contexts);
  }
  static Class make(const char* name, Class superclass, bool isCallingSuper = false) {
    callsSuper = isCallingSuper;
    cls = zib::ClassBuilder(name, superclass).method(sceneSelector, &open).registerClass();
    return cls;
  }
};

Object make(Class cls) {
  return Object::adopted(zib::send<id>(cls.object(), zib::selector<"new">()));
}

class InterceptedClassesTest : public testing::Test {
 protected:
  // Connects a scene for each, in that order, and runs the pass.
  void install(const std::vector<Object>& delegates) {
    for (const Object& delegate : delegates) sim::uikit::connectScene(true, delegate);
    ZibSwizzleManager::shared().setupAutoSwizzling();
    device_.forget();
  }
  // The host's methods that one opened URL runs, in order.
  Names open(const Object& delegate) {
    calls().clear();
    device_.forget();
    const auto url = zib::URL::parse("app://open");
    test::openURLContexts(delegate.raw(), sim::uikit::scene(0),
                          sim::uikit::makeURLContexts({Object::retained(url->native())}).raw());
    EXPECT_EQ(device_.countOfLine(handledLine), 1U) << "handled by the module";
    EXPECT_TRUE(device_.errorLines().empty());
    for (const Call& call : calls()) {
      EXPECT_EQ(call.receiver, delegate.raw());
      EXPECT_EQ(call.selector, sceneSelector);
    }
    return callers();
  }
  static Class object() { return zib::classNamed<"NSObject">(); }

  Device device_;
};

TEST_F(InterceptedClassesTest, TwoScenesOfOneClass) {
  const Class cls = Scene<0>::make("SceneOne", object());
  const Object first = make(cls);
  const Object second = make(cls);
  install({first, second});
  EXPECT_EQ(open(first), Names{"SceneOne"});
  EXPECT_EQ(open(second), Names{"SceneOne"});
  const auto row = ZibTestSeam::Row::sceneOpenURL;
  EXPECT_TRUE(ZibTestSeam::didSwap(row));
  EXPECT_NE(ZibTestSeam::original(row), ZibTestSeam::interceptor(row));
}

TEST_F(InterceptedClassesTest, TwoScenesOfOneClassRepeatTheLines) {
  const Class cls = Scene<0>::make("SceneOne", object());
  sim::uikit::connectScene(true, make(cls));
  sim::uikit::connectScene(true, make(cls));
  ZibSwizzleManager::shared().setupAutoSwizzling();
  EXPECT_EQ(device_.countOfLine("🎬 Swizzling SceneDelegate: SceneOne"), 2U);
  EXPECT_EQ(device_.countOfLine("  ✓ Swapped: scene:openURLContexts:"), 2U);
}

TEST_F(InterceptedClassesTest, TwoScenesOfOneClassWithoutTheMethod) {
  const Class cls = zib::ClassBuilder("SceneEmpty", object()).registerClass();
  const Object first = make(cls);
  const Object second = make(cls);
  install({first, second});
  EXPECT_EQ(open(first), Names{});
  EXPECT_EQ(open(second), Names{});
  EXPECT_FALSE(ZibTestSeam::didSwap(ZibTestSeam::Row::sceneOpenURL));
  EXPECT_EQ(ZibTestSeam::original(ZibTestSeam::Row::sceneOpenURL), nullptr);
}

TEST_F(InterceptedClassesTest, TwoClassesReachTheirOwnMethods) {
  const Object first = make(Scene<0>::make("SceneOne", object()));
  const Object second = make(Scene<1>::make("SceneTwo", object()));
  const Object third = make(zib::ClassBuilder("SceneEmpty", object()).registerClass());
  install({first, second, third});
  EXPECT_EQ(open(first), Names{"SceneOne"});
  EXPECT_EQ(open(second), Names{"SceneTwo"});
  EXPECT_EQ(open(third), Names{});
}

TEST_F(InterceptedClassesTest, AnInheritedMethodIsReplacedForAllSubclasses) {
  const Class base = Scene<0>::make("SceneBase", object());
  const Object derived = make(zib::ClassBuilder("SceneDerived", base).registerClass());
  const Object sibling = make(zib::ClassBuilder("SceneSibling", base).registerClass());
  const Object itself = make(base);
  install({derived});
  EXPECT_EQ(open(derived), Names{"SceneBase"});
  EXPECT_EQ(open(sibling), Names{"SceneBase"});
  EXPECT_EQ(open(itself), Names{"SceneBase"});
}

enum class Order { baseFirst, derivedFirst };

const char* nameOf(Order order) { return order == Order::baseFirst ? "BaseFirst" : "DerivedFirst"; }

// Both orders of installation give the same.
class OrderTest : public InterceptedClassesTest, public testing::WithParamInterface<Order> {
 protected:
  void installBoth(const Object& base, const Object& derived) {
    install(GetParam() == Order::baseFirst ? std::vector<Object>{base, derived}
                                           : std::vector<Object>{derived, base});
  }
};

INSTANTIATE_TEST_SUITE_P(Classes, OrderTest, testing::Values(Order::baseFirst, Order::derivedFirst),
                         test::rowName);

TEST_P(OrderTest, ASubclassThatOverridesReachesItsOwn) {
  const Class base = Scene<0>::make("SceneBase", object());
  const Object derivedObject = make(Scene<1>::make("SceneDerived", base));
  const Object baseObject = make(base);
  installBoth(baseObject, derivedObject);
  EXPECT_EQ(open(derivedObject), Names{"SceneDerived"});
  EXPECT_EQ(open(baseObject), Names{"SceneBase"});
}

TEST_P(OrderTest, ASubclassThatCallsSuperReachesBothOnce) {
  const Class base = Scene<0>::make("SceneBase", object());
  const Object derivedObject = make(Scene<1>::make("SceneDerived", base, true));
  const Object baseObject = make(base);
  installBoth(baseObject, derivedObject);
  EXPECT_EQ(open(derivedObject), (Names{"SceneDerived", "SceneBase"}));
  EXPECT_EQ(open(baseObject), Names{"SceneBase"});
  EXPECT_EQ(open(derivedObject), (Names{"SceneDerived", "SceneBase"}));
}

TEST_P(OrderTest, ASubclassThatInheritsReachesItsSuperclasss) {
  const Class base = Scene<0>::make("SceneBase", object());
  const Object derivedObject = make(zib::ClassBuilder("SceneDerived", base).registerClass());
  const Object baseObject = make(base);
  installBoth(baseObject, derivedObject);
  EXPECT_EQ(open(derivedObject), Names{"SceneBase"});
  EXPECT_EQ(open(baseObject), Names{"SceneBase"});
}

TEST_P(OrderTest, ASuperclassWithoutTheMethodIsNeverForwarded) {
  const Class base = zib::ClassBuilder("SceneBase", object()).registerClass();
  const Object derivedObject = make(Scene<1>::make("SceneDerived", base, true));
  const Object baseObject = make(base);
  installBoth(baseObject, derivedObject);
  EXPECT_EQ(open(derivedObject), Names{"SceneDerived"});
  EXPECT_EQ(open(baseObject), Names{});
}

TEST_P(OrderTest, NeitherHasTheMethod) {
  const Class base = zib::ClassBuilder("SceneBase", object()).registerClass();
  const Object derivedObject = make(zib::ClassBuilder("SceneDerived", base).registerClass());
  const Object baseObject = make(base);
  installBoth(baseObject, derivedObject);
  EXPECT_EQ(open(derivedObject), Names{});
  EXPECT_EQ(open(baseObject), Names{});
}

TEST_P(OrderTest, AClassBetweenThatIsNotIntercepted) {
  const Class base = Scene<0>::make("SceneBase", object());
  const Class middle = Scene<1>::make("SceneMiddle", base, true);
  const Object derivedObject = make(Scene<2>::make("SceneDerived", middle, true));
  const Object baseObject = make(base);
  installBoth(baseObject, derivedObject);
  EXPECT_EQ(open(derivedObject), (Names{"SceneDerived", "SceneMiddle", "SceneBase"}));
  EXPECT_EQ(open(baseObject), Names{"SceneBase"});
}

TEST_F(InterceptedClassesTest, AHierarchyOfThreeThatAllCallSuper) {
  const Class base = Scene<0>::make("SceneBase", object(), true);
  const Class middle = Scene<1>::make("SceneMiddle", base, true);
  const Class derived = Scene<2>::make("SceneDerived", middle, true);
  const Object one = make(base);
  const Object two = make(middle);
  const Object three = make(derived);
  install({two, three, one});
  EXPECT_EQ(open(three), (Names{"SceneDerived", "SceneMiddle", "SceneBase"}));
  EXPECT_EQ(open(two), (Names{"SceneMiddle", "SceneBase"}));
  EXPECT_EQ(open(one), Names{"SceneBase"});
}

// A subclass whose objects are no delegates when the pass runs, and are later.
TEST_F(InterceptedClassesTest, AnUnseenSubclassIsHandledWhenItCallsSuper) {
  const Class base = Scene<0>::make("SceneBase", object());
  const Object unseen = make(Scene<1>::make("SceneUnseen", base, true));
  install({make(base)});
  EXPECT_EQ(open(unseen), (Names{"SceneUnseen", "SceneBase"}));
}

// One host's method may lead to another delegate's while it runs.
struct Relaying {
  static inline id other = nullptr;

  static void open(id self, SEL selector, id scene, id contexts) {
    calls().push_back({"SceneRelaying", self, zib::objc::nameOfSelector(selector)});
    test::openURLContexts(other, scene, contexts);
  }
};

TEST_F(InterceptedClassesTest, ACallbackPassedOnToAnotherDelegateCountsOnce) {
  const Object relaying = make(zib::ClassBuilder("SceneRelaying", object())
                                   .method(sceneSelector, &Relaying::open)
                                   .registerClass());
  const Object target = make(Scene<0>::make("SceneTarget", object()));
  Relaying::other = target.raw();
  install({relaying, target});
  const auto url = zib::URL::parse("app://open");
  test::openURLContexts(relaying.raw(), sim::uikit::scene(0),
                        sim::uikit::makeURLContexts({Object::retained(url->native())}).raw());
  EXPECT_EQ(callers(), (Names{"SceneRelaying", "SceneTarget"}));
  EXPECT_EQ(calls().at(1).receiver, target.raw());
  EXPECT_EQ(device_.countOfLine(handledLine), 1U);
}

// The completion of a callback that passes two intercepted classes is still called once.
struct Presenting {
  static inline Class derived;

  static void complete(id, SEL, id, id, zib::BlockLayout* completion) {
    calls().push_back({"Base", nullptr, {}});
    zib::Block<void(UInteger)>::call(completion, 4);
  }
  static void callSuper(id self, SEL selector, id center, id notification,
                        zib::BlockLayout* completion) {
    calls().push_back({"Derived", nullptr, {}});
    const auto inherited = derived.superclass().instanceMethod(zib::Selector(selector));
    zib::callImplementation<void>(inherited.implementation(), self, zib::Selector(selector), center,
                                  notification, completion);
  }
};

TEST_F(InterceptedClassesTest, ACompletionThatPassesTwoInterceptedClassesIsCalledOnce) {
  constexpr const char* selector =
      "userNotificationCenter:willPresentNotification:withCompletionHandler:";
  const Class base = zib::ClassBuilder("PresentingBase", object())
                         .method(selector, &Presenting::complete)
                         .registerClass();
  Presenting::derived = zib::ClassBuilder("PresentingDerived", base)
                            .method(selector, &Presenting::callSuper)
                            .registerClass();
  // The notification centre has one delegate at a time, so the second class is intercepted by hand.
  const Object object = make(Presenting::derived);
  sim::usernotifications::setDelegate(make(base));
  ZibSwizzleManager::shared().setupAutoSwizzling();
  ZibTestSeam::runAddOrSwap(ZibTestSeam::Row::willPresent, object.raw());
  device_.forget();
  std::vector<UInteger> options;
  test::willPresent(
      object.raw(), sim::usernotifications::makeNotification({}).raw(),
      zib::Block<void(UInteger)>::from([&](UInteger chosen) { options.push_back(chosen); }));
  EXPECT_EQ(options, std::vector<UInteger>{4});
  EXPECT_EQ(callers(), (Names{"Derived", "Base"}));
  EXPECT_EQ(device_.entries("event").size(), 1U);
}

// No superclass is intercepted, so the second call is one of the host's own, not one of `super`.
struct Again {
  static void open(id self, SEL selector, id scene, id contexts) {
    calls().push_back({"Again", self, {}});
    if (calls().size() == 1) {
      zib::send<void>(self, zib::Selector(selector), scene, contexts);
    }
  }
};

TEST_F(InterceptedClassesTest, AHostThatCallsItselfAgainReachesItselfAgain) {
  const Object scene = make(zib::ClassBuilder("SceneAgain", object())
                                .method(sceneSelector, &Again::open)
                                .registerClass());
  install({scene});
  const auto url = zib::URL::parse("app://open");
  test::openURLContexts(scene.raw(), sim::uikit::scene(0),
                        sim::uikit::makeURLContexts({Object::retained(url->native())}).raw());
  EXPECT_EQ(callers(), (Names{"Again", "Again"}));
}

}  // namespace
