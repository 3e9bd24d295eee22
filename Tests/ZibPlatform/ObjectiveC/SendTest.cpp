#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/ObjectiveC/Send.h"

#include <gtest/gtest.h>

#include <string>

#include "Tests/Support/Exceptions.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace {

using zib::Class;
using zib::classNamed;
using zib::Selector;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

class SendTest : public test::PlatformTest {};

struct Seen {
  id receiver = nullptr;
  std::string selector;
  id object = nullptr;
  double number = 0;
  BOOL flag = 0;
};

Seen& seen() {
  static Seen seen;
  return seen;
}

double takeAll(id self, SEL command, id object, double number, BOOL flag) {
  seen() = {self, zib::objc::nameOfSelector(command), object, number, flag};
  return number * 2;
}

void raiseStandard(id, SEL) { test::raise(test::Thrown::standard); }
void raisePlatform(id, SEL) { test::raise(test::Thrown::platform); }

id initWithName(id self, SEL, id name) {
  seen().object = name;
  if (name != nullptr) return self;
  zib::objc::release(self);
  return nullptr;
}

zib::Object makeReceiver() {
  static const Class cls = zib::ClassBuilder("SendTestReceiver", classNamed<"NSObject">())
                               .method("initWithName:", &initWithName)
                               .method("take:number:flag:", &takeAll)
                               .method("raiseStandard", &raiseStandard)
                               .method("raisePlatform", &raisePlatform)
                               .registerClass();
  return zib::create(cls);
}

TEST_F(SendTest, ArgumentsAndResultArriveWhole) {
  const zib::Object receiver = makeReceiver();
  const zib::Object text = zib::makeString("text");
  EXPECT_EQ(
      send<double>(receiver.raw(), selector<"take:number:flag:">(), text.raw(), 1.25, BOOL{1}),
      2.5);
  EXPECT_EQ(seen().receiver, receiver.raw());
  EXPECT_EQ(seen().selector, "take:number:flag:");
  EXPECT_EQ(seen().object, text.raw());
  EXPECT_EQ(seen().number, 1.25);
  EXPECT_EQ(seen().flag, 1);
}

TEST_F(SendTest, NilAnswersWithNothing) {
  EXPECT_EQ(send<id>(nullptr, selector<"self">()), nullptr);
  EXPECT_EQ(send<double>(nullptr, selector<"doubleValue">()), 0.0);
  EXPECT_EQ(send<BOOL>(nullptr, selector<"boolValue">()), 0);
  EXPECT_EQ(send<UInteger>(nullptr, selector<"length">()), 0U);
  EXPECT_EQ(send<const char*>(nullptr, selector<"objCType">()), nullptr);
  send<void>(nullptr, selector<"addObject:">(), id{nullptr});
}

TEST_F(SendTest, AClassTakesMessagesToo) {
  EXPECT_EQ((zib::sendToClass<"SendTestNobodyHasThis", "alloc">()), nullptr);
  makeReceiver();
  EXPECT_EQ((zib::sendToClass<"SendTestReceiver", "class", zib::objc::Class>()),
            Class::named("SendTestReceiver").raw());
  EXPECT_EQ((zib::sendToClass<"SendTestReceiver", "instancesRespondToSelector:", BOOL>(
                selector<"take:number:flag:">().raw())),
            1);
}

UInteger owners(const zib::Object& object) {
  return send<UInteger>(object.raw(), selector<"retainCount">());
}

TEST_F(SendTest, WhatIsCreatedIsTheCallersOwn) {
  makeReceiver();
  const zib::Object made = zib::create<"SendTestReceiver">();
  EXPECT_EQ(Class::ofObject(made.raw()), Class::named("SendTestReceiver"));
  EXPECT_EQ(owners(made), 1U);
  EXPECT_EQ(Class::ofObject(zib::create(classNamed<"SendTestReceiver">()).raw()),
            Class::ofObject(made.raw()));
  const zib::Object initialised = zib::create<"SendTestReceiver", "initWithName:">(made.raw());
  EXPECT_EQ(Class::ofObject(initialised.raw()), Class::ofObject(made.raw()));
  EXPECT_EQ(seen().object, made.raw());
  EXPECT_EQ(owners(initialised), 1U);
}

TEST_F(SendTest, NothingIsCreatedOfAClassThatIsNotThereOrThatRefuses) {
  EXPECT_FALSE(zib::create<"SendTestNobodyHasThis">());
  EXPECT_FALSE((zib::create<"SendTestNobodyHasThis", "initWithName:">(id{nullptr})));
  makeReceiver();
  EXPECT_FALSE((zib::create<"SendTestReceiver", "initWithName:">(id{nullptr})));
}

TEST_F(SendTest, ExceptionsPassThrough) {
  const zib::Object receiver = makeReceiver();
  EXPECT_THROW(send<void>(receiver.raw(), selector<"raiseStandard">()), std::runtime_error);
  EXPECT_ANY_THROW(send<void>(receiver.raw(), selector<"raisePlatform">()));
  EXPECT_ANY_THROW(send<void>(receiver.raw(), selector<"sendTestNobodyHasThis">()));
}

TEST_F(SendTest, ASavedImplementationIsCalledAsTheMethodThatItIs) {
  const zib::Object receiver = makeReceiver();
  const Selector take = selector<"take:number:flag:">();
  const auto implementation = Class::ofObject(receiver.raw()).instanceMethod(take).implementation();
  EXPECT_EQ(zib::callImplementation<double>(implementation, receiver.raw(), take, id{nullptr}, 0.5,
                                            BOOL{0}),
            1.0);
  EXPECT_EQ(seen().receiver, receiver.raw());
  EXPECT_EQ(seen().selector, "take:number:flag:");
}

TEST_F(SendTest, AWrongResultTypeStopsADebugBuild) {
  if (!zib::sendsAreChecked) GTEST_SKIP() << "the module was built without the checks";
  const zib::Object text = zib::makeString("text");
  EXPECT_DEATH(send<double>(text.raw(), selector<"length">()),
               "the message length to an object of class .*String.* was sent as "
               "\"d16@0:8\", but the method is \"[QL]16@0:8\"");
}

TEST_F(SendTest, AWrongArgumentCountOrTypeStopsADebugBuild) {
  if (!zib::sendsAreChecked) GTEST_SKIP() << "the module was built without the checks";
  const zib::Object receiver = makeReceiver();
  EXPECT_DEATH(send<double>(receiver.raw(), selector<"take:number:flag:">(), id{nullptr}),
               "take:number:flag: to an object of class SendTestReceiver was sent as "
               "\"d24@0:8@16\", but the method is \"d36@0:8@16d24C32\"");
  EXPECT_DEATH(
      send<double>(receiver.raw(), selector<"take:number:flag:">(), id{nullptr}, 1, BOOL{0}),
      "was sent as \"d32@0:8@16i24C28\"");
}

TEST_F(SendTest, ABlockMayBeDeclaredAsAnObjectOrAPointer) {
  const zib::Object receiver = makeReceiver();
  zib::checkSend(receiver.raw(), selector<"take:number:flag:">(), "d36@0:8@?16d24C32");
}

}  // namespace
