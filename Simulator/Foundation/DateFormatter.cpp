// NSISO8601DateFormatter in its default form: UTC, to the second.

#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/Foundation/GregorianTime.h"
#include "Simulator/Foundation/Installers.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::objc::id;
using zib::objc::SEL;

id stringFromDate(id, SEL, id date) {
  if (date == nullptr) return nullptr;
  const auto text =
      internetDateTime(zib::send<double>(date, zib::selector<"timeIntervalSince1970">()));
  return text ? autoreleased(zib::makeString(*text)) : nullptr;
}

}  // namespace

void foundation::installDateFormatter() {
  installMethod(zib::Class::named("NSISO8601DateFormatter"), "stringFromDate:", &stringFromDate);
}

}  // namespace sim
