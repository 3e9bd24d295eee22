#include "ZibPlatform/Foundation/ISO8601.h"

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

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
