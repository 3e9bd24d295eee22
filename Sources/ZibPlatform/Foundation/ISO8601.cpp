#include "ZibPlatform/Foundation/ISO8601.h"

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

std::string format(objc::id date) {
  // A formatter of its own for each call, so that calls on several threads share nothing.
  const Object formatter = create<"NSISO8601DateFormatter">();
  return utf8From(send<objc::id>(formatter.raw(), selector<"stringFromDate:">(), date));
}

}  // namespace

std::string currentTimeInISO8601() {
  const AutoreleasePool pool;
  return format(sendToClass<"NSDate", "date">());
}

std::string timeInISO8601(Date date) {
  const AutoreleasePool pool;
  return format(objectFrom(date).raw());
}

}  // namespace zib
