// What is told of an exception once it has been caught, however little it tells itself.

#include "ZibPlatform/Foundation/Exception.h"

#include <gtest/gtest.h>

#include <string>

#include "Tests/Support/Exceptions.h"
#include "Tests/Support/PlatformTest.h"
#include "Tests/Support/RowName.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace {

using zib::Caught;
using zib::caughtFrom;
using zib::classNamed;
using zib::objc::id;
using zib::objc::SEL;

id answerNil(id, SEL) { return nullptr; }
id answerNull(id, SEL) { return zib::sendToClass<"NSNull", "null">(); }

using Answer = id (*)(id, SEL);

// An exception "Planned: planned for the platform" with a method of its own.
struct OddException {
  const char* name;
  const char* selector;
  Answer answer;
  const char* description;
};

void PrintTo(const OddException& row, std::ostream* stream) { *stream << row.name; }

constexpr OddException everyOddException[] = {
    {"NameThatRaises", "name", &test::raiseInstead<id>, "OddException: planned for the platform"},
    {"NoName", "name", &answerNil, "OddException: planned for the platform"},
    {"NameThatIsNoText", "name", &answerNull, "OddException: planned for the platform"},
    {"ReasonThatRaises", "reason", &test::raiseInstead<id>, "Planned: no reason given"},
    {"NoReason", "reason", &answerNil, "Planned: no reason given"},
    {"ReasonThatIsNoText", "reason", &answerNull, "Planned: no reason given"},
    {"DescriptionThatRaises", "description", &test::raiseInstead<id>,
     "Planned: planned for the platform"},
    {"InformationThatRaises", "userInfo", &test::raiseInstead<id>,
     "Planned: planned for the platform"},
};

class OddExceptionTest : public test::FoundationTest,
                         public testing::WithParamInterface<OddException> {};

INSTANTIATE_TEST_SUITE_P(Every, OddExceptionTest, testing::ValuesIn(everyOddException),
                         test::rowName);

TEST_P(OddExceptionTest, IsDescribedByWhatItTells) {
  const zib::Class cls = zib::ClassBuilder("OddException", classNamed<"NSException">())
                             .method(GetParam().selector, GetParam().answer)
                             .registerClass();
  const Caught caught = caughtFrom([&] { test::raiseOf(cls); });
  ASSERT_TRUE(caught);
  EXPECT_EQ(caught->description(), GetParam().description);
}

class ExceptionTest : public test::FoundationTest {};

TEST_F(ExceptionTest, NoneWhereNothingIsThrown) {
  EXPECT_FALSE(caughtFrom([] {}));
}

TEST_F(ExceptionTest, IsToldAfterThePoolInWhichItWasThrown) {
  Caught caught;
  {
    const zib::AutoreleasePool pool;
    caught = caughtFrom([] { test::raise(test::Thrown::platform); });
  }
  ASSERT_TRUE(caught);
  EXPECT_EQ(caught->description(), "Planned: planned for the platform");
}

TEST_F(ExceptionTest, OneThatIsToldInsideAnotherCatchBlockOfCppIsDescribed) {
  std::string description;
  try {
    test::raise(test::Thrown::standard);
  } catch (...) {
    const Caught inner = caughtFrom([] { test::raise(test::Thrown::ofItsOwnType); });
    ASSERT_TRUE(inner);
    description = inner->description();
  }
  EXPECT_EQ(description, "an exception of a type of its own");
}

}  // namespace
