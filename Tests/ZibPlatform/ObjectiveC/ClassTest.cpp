// Selectors, classes and methods of the runtime, and making classes.

#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/ObjectiveC/Class.h"

#include <gtest/gtest.h>

#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

extern "C" zib::objc::id class_createInstance(objc_class* cls, std::size_t extraBytes);

namespace {

using zib::Class;
using zib::ClassBuilder;
using zib::classNamed;
using zib::Object;
using zib::Selector;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;

class ClassTest : public test::PlatformTest {};

Object make(Class cls) { return Object::adopted(send<id>(cls.object(), selector<"new">())); }

int one(id, SEL) { return 1; }
int two(id, SEL) { return 2; }
int three(id, SEL) { return 3; }

id name(id, SEL) { return nullptr; }
void setName(id, SEL, id /*value*/) {}
void observed(id, SEL, id /*keyPath*/, id /*object*/, id /*change*/, void* /*context*/) {}

// Lets somebody observe the object's "name", which puts a hidden class before its own.
class Observation {
 public:
  explicit Observation(id subject) : subject_(subject) {
    send<void>(subject_, selector<"addObserver:forKeyPath:options:context:">(), observer_.raw(),
               key_.raw(), zib::objc::UInteger{1}, static_cast<void*>(nullptr));
  }
  ~Observation() {
    send<void>(subject_, selector<"removeObserver:forKeyPath:">(), observer_.raw(), key_.raw());
  }
  Observation(const Observation&) = delete;
  Observation& operator=(const Observation&) = delete;

 private:
  id subject_;
  Object key_ = zib::makeString("name");
  Object observer_ = make(ClassBuilder("ClassTestObserver", classNamed<"NSObject">())
                              .method("observeValueForKeyPath:ofObject:change:context:", &observed)
                              .registerClass());
};

TEST_F(ClassTest, SelectorsOfOneNameAreEqual) {
  EXPECT_EQ(Selector("classTestSelector:"), selector<"classTestSelector:">());
  EXPECT_FALSE(Selector("classTestSelector:") == Selector("classTestSelector"));
  EXPECT_STREQ(selector<"classTestSelector:">().name(), "classTestSelector:");
}

TEST_F(ClassTest, SelectorsWithAndWithoutTypesAreEqual) {
  const Class cls = ClassBuilder("ClassTestTyped", classNamed<"NSObject">())
                        .method("classTestTyped", &one)
                        .registerClass();
  unsigned int count = 0;
  objc_method** const methods = class_copyMethodList(cls.raw(), &count);
  ASSERT_EQ(count, 1U);
  EXPECT_STREQ(zib::Method(methods[0]).typeEncoding(), "i16@0:8");
  std::free(methods);  // NOLINT(cppcoreguidelines-no-malloc): the runtime's memory
}

TEST_F(ClassTest, ClassesAreFoundByName) {
  EXPECT_FALSE(Class::named("ClassTestLate"));
  EXPECT_FALSE(classNamed<"ClassTestLate">());
  const Class cls = ClassBuilder("ClassTestLate", classNamed<"NSObject">()).registerClass();
  EXPECT_EQ(Class::named("ClassTestLate"), cls);
  EXPECT_EQ(classNamed<"ClassTestLate">(), cls);
  EXPECT_STREQ(cls.name(), "ClassTestLate");
  EXPECT_EQ(cls.superclass(), classNamed<"NSObject">());
}

TEST_F(ClassTest, NilHasNoClass) {
  EXPECT_FALSE(Class::ofObject(nullptr));
  EXPECT_FALSE(Class::visibleClassOf(nullptr));
  EXPECT_FALSE(zib::isNSObject(nullptr));
  EXPECT_FALSE(zib::isKind<"NSObject">(nullptr));
  EXPECT_FALSE(zib::respondsTo(nullptr, selector<"description">()));
}

TEST_F(ClassTest, DerivesFromItselfAndItsAncestors) {
  const Class base = ClassBuilder("ClassTestBase", classNamed<"NSObject">()).registerClass();
  const Class derived = ClassBuilder("ClassTestDerived", base).registerClass();
  EXPECT_TRUE(derived.derivesFrom(derived));
  EXPECT_TRUE(derived.derivesFrom(base));
  EXPECT_TRUE(derived.derivesFrom(classNamed<"NSObject">()));
  EXPECT_FALSE(base.derivesFrom(derived));
  EXPECT_FALSE(derived.derivesFrom(Class()));
}

TEST_F(ClassTest, BuiltMethodsAnswer) {
  const Class cls = ClassBuilder("ClassTestAnswers", classNamed<"NSObject">())
                        .method("one", &one)
                        .classMethod("two", &two)
                        .registerClass();
  const Object object = make(cls);
  EXPECT_EQ(send<int>(object.raw(), Selector("one")), 1);
  EXPECT_EQ(send<int>(cls.object(), Selector("two")), 2);
  EXPECT_FALSE(zib::respondsTo(object.raw(), Selector("two")));
  EXPECT_STREQ(cls.instanceMethod(Selector("one")).typeEncoding(), "i16@0:8");
}

TEST_F(ClassTest, ATakenNameBuildsNothing) {
  ClassBuilder builder("NSString", classNamed<"NSObject">());
  EXPECT_FALSE(builder.method("classTestOne", &one).registerClass());
  EXPECT_FALSE(classNamed<"NSString">().instanceMethod(Selector("classTestOne")));
}

TEST_F(ClassTest, AMethodIsAddedOnceAndReplacedInPlace) {
  Class base = ClassBuilder("ClassTestReplaced", classNamed<"NSObject">())
                   .method("one", &one)
                   .registerClass();
  const Class derived = ClassBuilder("ClassTestReplacedBelow", base).registerClass();
  const auto function = [](auto* implementation) {
    return zib::objc::functionCast<zib::objc::IMP>(implementation);
  };
  EXPECT_FALSE(base.addMethod(Selector("one"), function(&two), "i16@0:8"));
  EXPECT_TRUE(base.addMethod(Selector("two"), function(&two), "i16@0:8"));
  const Object object = make(derived);
  EXPECT_EQ(send<int>(object.raw(), Selector("one")), 1);
  derived.instanceMethod(Selector("one")).setImplementation(function(&three));
  EXPECT_EQ(send<int>(object.raw(), Selector("one")), 3);
  EXPECT_EQ(base.instanceMethod(Selector("one")).implementation(), function(&three));
}

TEST_F(ClassTest, TheOwnerOfAMethodIsTheClassThatBringsIt) {
  const Class base =
      ClassBuilder("ClassTestOwner", classNamed<"NSObject">()).method("one", &one).registerClass();
  const Class middle = ClassBuilder("ClassTestOwnerMiddle", base).registerClass();
  const Class derived =
      ClassBuilder("ClassTestOwnerDerived", middle).method("one", &two).registerClass();
  const Class last = ClassBuilder("ClassTestOwnerLast", derived).registerClass();
  EXPECT_EQ(base.ownerOf(Selector("one")), base);
  EXPECT_EQ(middle.ownerOf(Selector("one")), base);
  EXPECT_EQ(derived.ownerOf(Selector("one")), derived);
  EXPECT_EQ(last.ownerOf(Selector("one")), derived);
  EXPECT_FALSE(last.ownerOf(Selector("classTestNobodyHasThis")));
  EXPECT_EQ(last.ownerOf(selector<"description">()), classNamed<"NSObject">());
}

TEST_F(ClassTest, TheVisibleClassHidesAnObservation) {
  const Class cls = ClassBuilder("ClassTestSubject", classNamed<"NSObject">())
                        .method("name", &name)
                        .method("setName:", &setName)
                        .registerClass();
  const Object subject = make(cls);
  EXPECT_EQ(Class::visibleClassOf(subject.raw()), cls);
  {
    const Observation observation(subject.raw());
    ASSERT_NE(Class::ofObject(subject.raw()), cls) << "observation left the class as it was";
    EXPECT_EQ(Class::visibleClassOf(subject.raw()), cls);
    EXPECT_TRUE(zib::isNSObject(subject.raw()));
  }
  EXPECT_EQ(Class::visibleClassOf(subject.raw()), cls);
}

zib::objc::Class lyingClass(id, SEL) { return classNamed<"NSString">().raw(); }
zib::objc::Class noClass(id, SEL) { return nullptr; }

TEST_F(ClassTest, TheVisibleClassIsTheActualOneWhenTheObjectsAnswerCannotBe) {
  const Class liar = ClassBuilder("ClassTestLiar", classNamed<"NSObject">())
                         .method("class", &lyingClass)
                         .registerClass();
  EXPECT_EQ(Class::visibleClassOf(make(liar).raw()), liar);
  const Class silent = ClassBuilder("ClassTestSilent", classNamed<"NSObject">())
                           .method("class", &noClass)
                           .registerClass();
  EXPECT_EQ(Class::visibleClassOf(make(silent).raw()), silent);
}

TEST_F(ClassTest, AnObjectIsTakenForAnyClassOfItsAncestryAndForNoOther) {
  const Object text = zib::makeString("text");
  EXPECT_EQ(zib::cast<"NSString">(text.raw()), text.raw());
  EXPECT_EQ(zib::cast<"NSObject">(text.raw()), text.raw());
  EXPECT_EQ(zib::cast<"NSData">(text.raw()), nullptr);
  EXPECT_EQ(zib::cast<"ClassTestNobodyHasThis">(text.raw()), nullptr);
  EXPECT_EQ(zib::cast<"NSString">(nullptr), nullptr);
  EXPECT_EQ(zib::cast<"NSString">(classNamed<"NSString">().object()), nullptr);
}

BOOL isAnything(id, SEL, zib::objc::Class) { return 1; }

TEST_F(ClassTest, AnObjectMayAnswerForAClassThatItDoesNotDeriveFrom) {
  const Class cls = ClassBuilder("ClassTestDisguised", classNamed<"NSObject">())
                        .method("isKindOfClass:", &isAnything)
                        .registerClass();
  const Object disguised = make(cls);
  EXPECT_EQ(zib::cast<"NSData">(disguised.raw()), disguised.raw());
  // What one object answers says nothing of its class.
  EXPECT_FALSE(zib::isKind<"NSData">(zib::makeString("text").raw()));
}

TEST_F(ClassTest, OnlyTheHierarchyOfNSObjectCounts) {
  EXPECT_TRUE(zib::isNSObject(zib::makeString("text").raw()));
  EXPECT_TRUE(zib::isNSObject(classNamed<"NSString">().object()));

  const Class proxyClass = classNamed<"NSProxy">();
  const Object proxy = Object::adopted(send<id>(proxyClass.object(), selector<"alloc">()));
  EXPECT_FALSE(zib::isNSObject(proxy.raw()));
  EXPECT_FALSE(zib::isNSObject(proxyClass.object()));
  EXPECT_EQ(Class::visibleClassOf(proxy.raw()), proxyClass);

  const Class root(zib::objc::allocateClassPair(nullptr, "ClassTestRoot", 0));
  constexpr unsigned char logOfPointerAlignment = 3;
  class_addIvar(root.raw(), "isa", sizeof(id), logOfPointerAlignment, "#");
  zib::objc::registerClassPair(root.raw());
  const id rootObject = class_createInstance(root.raw(), 0);
  EXPECT_FALSE(zib::isNSObject(rootObject));
  EXPECT_EQ(Class::visibleClassOf(rootObject), root);
  EXPECT_FALSE(root.superclass());
  std::free(rootObject);  // NOLINT(cppcoreguidelines-no-malloc): the runtime's memory
}

}  // namespace
