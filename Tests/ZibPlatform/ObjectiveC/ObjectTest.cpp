// Who keeps a platform object alive, and for how long.

#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/ObjectiveC/Object.h"

#include <gtest/gtest.h>

#include <utility>

#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::classNamed;
using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

int& deaths() {
  static int deaths = 0;
  return deaths;
}

void dealloc(id self, SEL command) {
  ++deaths();
  const auto inherited = classNamed<"NSObject">().instanceMethod(zib::Selector(command));
  zib::callImplementation<void>(inherited.implementation(), self, zib::Selector(command));
}

class ObjectTest : public test::PlatformTest {
 protected:
  static id makeMortal() {
    static const zib::Class cls = zib::ClassBuilder("ObjectTestMortal", classNamed<"NSObject">())
                                      .method("dealloc", &dealloc)
                                      .registerClass();
    return send<id>(cls.object(), selector<"new">());
  }
  static UInteger owners(const Object& object) {
    return send<UInteger>(object.raw(), selector<"retainCount">());
  }
};

TEST_F(ObjectTest, AnAdoptedObjectDiesWithItsOnlyOwner) {
  {
    const Object object = Object::adopted(makeMortal());
    EXPECT_EQ(owners(object), 1U);
    EXPECT_EQ(deaths(), 0);
  }
  EXPECT_EQ(deaths(), 1);
}

TEST_F(ObjectTest, ASharedObjectOutlivesTheOthers) {
  const id raw = makeMortal();
  {
    const Object shared = Object::retained(raw);
    EXPECT_EQ(owners(shared), 2U);
    zib::objc::release(raw);
    EXPECT_EQ(owners(shared), 1U);
    EXPECT_EQ(deaths(), 0);
  }
  EXPECT_EQ(deaths(), 1);
}

TEST_F(ObjectTest, CopiesRetainAndMovesDoNot) {
  Object first = Object::adopted(makeMortal());
  Object second = first;
  EXPECT_EQ(owners(first), 2U);
  const Object third = std::move(second);
  EXPECT_EQ(owners(first), 2U);
  EXPECT_FALSE(second);  // NOLINT(bugprone-use-after-move): what a move leaves is promised
  second = third;
  EXPECT_EQ(owners(first), 3U);
  second = std::move(first);
  EXPECT_EQ(owners(second), 2U);
  second = Object();
  EXPECT_EQ(owners(third), 1U);
  EXPECT_EQ(deaths(), 0);
}

TEST_F(ObjectTest, AssigningAnObjectToItselfKeepsIt) {
  Object object = Object::adopted(makeMortal());
  const Object& same = object;
  object = same;
  EXPECT_EQ(owners(object), 1U);
  EXPECT_EQ(deaths(), 0);
}

TEST_F(ObjectTest, NilIsNothing) {
  const Object none = Object::retained(nullptr);
  const Object copy = none;
  EXPECT_FALSE(none);
  EXPECT_FALSE(copy);
  EXPECT_EQ(Object::adopted(nullptr).raw(), nullptr);
}

TEST_F(ObjectTest, APoolLetsGoAtItsEndAndPoolsNest) {
  {
    const zib::AutoreleasePool outer;
    send<id>(makeMortal(), selector<"autorelease">());
    {
      const zib::AutoreleasePool inner;
      send<id>(makeMortal(), selector<"autorelease">());
      EXPECT_EQ(deaths(), 0);
    }
    EXPECT_EQ(deaths(), 1);
  }
  EXPECT_EQ(deaths(), 2);
}

TEST_F(ObjectTest, APoolLetsGoWhenAnExceptionPasses) {
  try {
    const zib::AutoreleasePool pool;
    send<id>(makeMortal(), selector<"autorelease">());
    throw 1;
  } catch (int) {
    EXPECT_EQ(deaths(), 1);
  }
}

}  // namespace
