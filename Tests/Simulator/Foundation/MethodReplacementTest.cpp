// Replacing a method reaches the classes that inherit it, whatever methods they have of their own.

#include <gtest/gtest.h>

#include <string>

#include "Simulator/Foundation/Foundation.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::Class;
using zib::ClassBuilder;
using zib::Object;
using zib::send;
using zib::objc::id;
using zib::objc::SEL;

long one(id, SEL) { return 1; }
long two(id, SEL) { return 2; }
long three(id, SEL) { return 3; }

constexpr int methodCount = 64;

std::string methodName(int number) { return "number" + std::to_string(number); }

TEST(MethodReplacementTest, SubclassesWithMethodsOfTheirOwnSeeTheNewImplementation) {
  sim::foundation::install();
  const zib::AutoreleasePool pool;
  ClassBuilder base("ReplacementBase", zib::classNamed<"NSObject">());
  for (int number = 0; number < methodCount; ++number) {
    base.method(methodName(number).c_str(), &one);
  }
  ClassBuilder derived("ReplacementDerived", base.registerClass());
  for (int number = 1; number < methodCount; number += 2) {
    derived.method(methodName(number).c_str(), &two);
  }
  const Class derivedClass = derived.registerClass();
  const Object object = Object::adopted(send<id>(derivedClass.object(), zib::selector<"new">()));

  for (int number = 0; number < methodCount; ++number) {
    derivedClass.superclass()
        .instanceMethod(zib::Selector(methodName(number).c_str()))
        .setImplementation(zib::objc::functionCast<zib::objc::IMP>(&three));
  }
  for (int number = 0; number < methodCount; ++number) {
    EXPECT_EQ(send<long>(object.raw(), zib::Selector(methodName(number).c_str())),
              number % 2 == 0 ? 3 : 2)
        << number;
  }
}

}  // namespace
