// Exceptions of every origin, for hosts and cores that throw.

#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace test {

enum class Thrown { standard, ofItsOwnType, platform };

inline constexpr Thrown everyThrown[] = {Thrown::standard, Thrown::ofItsOwnType, Thrown::platform};

[[noreturn]] inline void raise(Thrown kind) {
  if (kind == Thrown::standard) throw std::runtime_error("planned");
  if (kind == Thrown::ofItsOwnType) throw 42;  // NOLINT: hosts may
  using zib::selector;
  using zib::objc::id;
  const id exception = zib::send<id>(
      zib::classNamed<"NSException">().object(), selector<"exceptionWithName:reason:userInfo:">(),
      zib::makeString("Planned").raw(), zib::makeString("planned for the platform").raw(),
      id{nullptr});
  zib::send<void>(exception, selector<"raise">());
  std::abort();
}

inline std::string nameOf(Thrown kind) {
  switch (kind) {
    case Thrown::standard:
      return "Standard";
    case Thrown::ofItsOwnType:
      return "OfItsOwnType";
    case Thrown::platform:
      return "Platform";
  }
  return {};
}

}  // namespace test
