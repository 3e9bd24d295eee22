#include "Platform/ISO8601.h"

#include "Platform/AutoreleasePool.h"
#include "Platform/Class.h"
#include "Platform/Object.h"
#include "Platform/Send.h"
#include "Platform/Strings.h"

namespace zib {

std::string currentTimeInISO8601() {
  const AutoreleasePool pool;
  // A formatter of its own for each call, so that calls on several threads share nothing.
  const Object formatter = Object::adopted(
      send<objc::id>(classNamed<"NSISO8601DateFormatter">().object(), selector<"new">()));
  const objc::id now = send<objc::id>(classNamed<"NSDate">().object(), selector<"date">());
  return utf8From(send<objc::id>(formatter.raw(), selector<"stringFromDate:">(), now));
}

}  // namespace zib
