// Exceptions of every origin, for hosts and cores that throw.

#pragma once

#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace test {

enum class Thrown { standard, speechless, ofItsOwnType, platform, platformThatRaises };

inline constexpr Thrown everyThrown[] = {Thrown::standard, Thrown::speechless, Thrown::ofItsOwnType,
                                         Thrown::platform, Thrown::platformThatRaises};

struct SpeechlessException : std::exception {
  [[nodiscard]] const char* what() const noexcept override { return nullptr; }
};

// Raises an exception of the platform's, of that class.
[[noreturn]] inline void raiseOf(zib::Class exceptionClass) {
  using zib::selector;
  using zib::objc::id;
  const id exception =
      zib::send<id>(exceptionClass.object(), selector<"exceptionWithName:reason:userInfo:">(),
                    zib::makeString("Planned").raw(),
                    zib::makeString("planned for the platform").raw(), id{nullptr});
  zib::send<void>(exception, selector<"raise">());
  std::abort();
}

// Whatever it is asked, it raises the platform's exception.
template <class Answer>
Answer raiseInstead(zib::objc::id /*self*/, zib::objc::SEL /*command*/) {
  raiseOf(zib::classNamed<"NSException">());
}

// A class whose exceptions raise an exception of the platform's wherever they are asked.
inline zib::Class raisingExceptionClass() {
  using zib::objc::id;
  constexpr const char* name = "RaisingException";
  const auto isKind = +[](id, zib::objc::SEL, zib::objc::Class) -> zib::objc::BOOL {
    raiseOf(zib::classNamed<"NSException">());
  };
  const zib::Class made = zib::ClassBuilder(name, zib::classNamed<"NSException">())
                              .method("name", &raiseInstead<id>)
                              .method("reason", &raiseInstead<id>)
                              .method("userInfo", &raiseInstead<id>)
                              .method("description", &raiseInstead<id>)
                              .method("class", &raiseInstead<zib::objc::Class>)
                              .method("isKindOfClass:", isKind)
                              .registerClass();
  return made ? made : zib::Class::named(name);
}

[[noreturn]] inline void raise(Thrown kind) {
  if (kind == Thrown::standard) throw std::runtime_error("planned");
  if (kind == Thrown::speechless) throw SpeechlessException();
  if (kind == Thrown::ofItsOwnType) throw 42;  // NOLINT: hosts may
  raiseOf(kind == Thrown::platform ? zib::classNamed<"NSException">() : raisingExceptionClass());
}

inline std::string nameOf(Thrown kind) {
  switch (kind) {
    case Thrown::standard:
      return "Standard";
    case Thrown::speechless:
      return "Speechless";
    case Thrown::ofItsOwnType:
      return "OfItsOwnType";
    case Thrown::platform:
      return "Platform";
    case Thrown::platformThatRaises:
      return "PlatformThatRaises";
  }
  return {};
}

}  // namespace test
