#include "Tests/Support/PlatformTest.h"
#include "ZibPlatform/Foundation/Error.h"

#include <gtest/gtest.h>

#include "Tests/Support/Exceptions.h"
#include "ZibPlatform/Foundation/ErrorPointer.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace {

using zib::Error;
using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::id;

class ErrorTest : public test::FoundationTest {};

void expectNoneGiven(const Error& error) {
  EXPECT_EQ(error.domain, "ZibMessaging");
  EXPECT_EQ(error.code, 0);
  EXPECT_EQ(error.description, "The platform reported a failure without an error object");
  EXPECT_FALSE(error.native);
}

TEST_F(ErrorTest, NilAndWhatIsNoErrorSaySo) {
  expectNoneGiven(Error::fromNative(nullptr));
  expectNoneGiven(Error::fromNative(zib::makeString("text").raw()));
  const Object proxy =
      Object::adopted(send<id>(zib::classNamed<"NSProxy">().object(), selector<"alloc">()));
  expectNoneGiven(Error::fromNative(proxy.raw()));
}

TEST_F(ErrorTest, BecomesThePlatformsAndComesBack) {
  const Object native = Error{"Domain é", -1009, "offline 😀", {}}.nativeError();
  const Error error = Error::fromNative(native.raw());
  EXPECT_EQ(error.domain, "Domain é");
  EXPECT_EQ(error.code, -1009);
  EXPECT_EQ(error.description, "offline 😀");
  EXPECT_EQ(error.native.raw(), native.raw());
  EXPECT_EQ(error.nativeError().raw(), native.raw());
}

id answerNil(id, zib::objc::SEL) { return nullptr; }
id answerNull(id, zib::objc::SEL) { return zib::sendToClass<"NSNull", "null">(); }
zib::objc::BOOL raiseForKind(id, zib::objc::SEL, zib::objc::Class) {
  test::raise(test::Thrown::platform);
}

constexpr id (*everyOddAnswer[])(id, zib::objc::SEL) = {&answerNil, &answerNull,
                                                        &test::raiseInstead<id>};

// An error in the domain "Domain" with the code 7, of a class with a method of its own.
template <class Method>
Error errorWithMethod(const char* selectorName, Method* method) {
  const std::string className = std::string("OddError.") + selectorName;
  zib::ClassBuilder(className.c_str(), zib::classNamed<"NSError">())
      .method(selectorName, method)
      .registerClass();
  const zib::Class cls = zib::Class::named(className.c_str());
  const zib::Method own = cls.instanceMethod(zib::Selector(selectorName));
  own.setImplementation(zib::objc::functionCast<zib::objc::IMP>(method));
  const Object native =
      Object::adopted(send<id>(zib::allocate(cls), selector<"initWithDomain:code:userInfo:">(),
                               zib::makeString("Domain").raw(), zib::objc::Integer{7}, id{}));
  Error error = Error::fromNative(native.raw());
  EXPECT_EQ(error.native.raw(), native.raw());
  return error;
}

TEST_F(ErrorTest, OneThatCannotBeDescribedSaysSoAndKeepsTheRest) {
  for (const auto answer : everyOddAnswer) {
    const Error error = errorWithMethod("localizedDescription", answer);
    EXPECT_EQ(error.domain, "Domain");
    EXPECT_EQ(error.code, 7);
    EXPECT_EQ(error.description, "The platform reported an error that cannot be described");
  }
}

TEST_F(ErrorTest, OneOfNoDomainKeepsTheRest) {
  for (const auto answer : everyOddAnswer) {
    const Error error = errorWithMethod("domain", answer);
    EXPECT_EQ(error.domain, "");
    EXPECT_EQ(error.code, 7);
  }
}

TEST_F(ErrorTest, OneThatRaisesForItsCodeKeepsTheRest) {
  const Error error = errorWithMethod("code", &test::raiseInstead<zib::objc::Integer>);
  EXPECT_EQ(error.domain, "Domain");
  EXPECT_EQ(error.code, 0);
  EXPECT_NE(error.description, "The platform reported a failure without an error object");
}

TEST_F(ErrorTest, WhatRaisesWhereItIsAskedForItsKindIsNoError) {
  const Object raising = zib::create(zib::ClassBuilder("Kindless", zib::classNamed<"NSObject">())
                                         .method("isKindOfClass:", &raiseForKind)
                                         .registerClass());
  expectNoneGiven(Error::fromNative(raising.raw()));
}

TEST_F(ErrorTest, AFailedCallGivesItsErrorOrSaysThatThereIsNone) {
  EXPECT_EQ(zib::failureOf([](id*) { return true; }), std::nullopt);
  const auto silent = zib::failureOf([](id*) { return false; });
  ASSERT_TRUE(silent);
  expectNoneGiven(*silent);
  const Object native = Error{"Domain", 7, "text", {}}.nativeError();
  const auto told = zib::failureOf([&](id* error) {
    *error = native.raw();
    return false;
  });
  ASSERT_TRUE(told);
  EXPECT_EQ(told->code, 7);
  // Set, but the call succeeded: what it points at means nothing then.
  EXPECT_EQ(zib::failureOf([&](id* error) {
              *error = native.raw();
              return true;
            }),
            std::nullopt);
}

TEST_F(ErrorTest, AnExceptionIsAFailure) {
  for (const test::Thrown kind : test::everyThrown) {
    const auto failure = zib::failureOf([&](id*) -> bool { test::raise(kind); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->description, "The platform threw an exception");
  }
}

TEST_F(ErrorTest, AnObjectOutlivesTheCallsPool) {
  const auto result = zib::objectOrError([](id*) {
    return send<id>(zib::objc::retain(zib::makeString("kept").raw()), selector<"autorelease">());
  });
  ASSERT_TRUE(result);
  EXPECT_EQ(zib::utf8From(result->raw()), "kept");
  EXPECT_FALSE(zib::objectOrError([](id*) { return id{nullptr}; }));
}

}  // namespace
