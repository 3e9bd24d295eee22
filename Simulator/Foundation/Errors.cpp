// NSError's description. Foundation's keys are known by their texts as much as by their constants,
// and the texts of GNUstep's constants are others.

#include "Simulator/Foundation/Installers.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::selector;
using zib::send;
using zib::objc::id;
using zib::objc::SEL;

zib::objc::IMP originalDescription = nullptr;

id localizedDescription(id error, SEL command) {
  const id userInfo = send<id>(error, selector<"userInfo">());
  const id given = send<id>(userInfo, selector<"objectForKey:">(),
                            zib::constantString<"NSLocalizedDescription">.object());
  if (given != nullptr) return given;
  return zib::callImplementation<id>(originalDescription, error, zib::Selector(command));
}

}  // namespace

void foundation::installErrors() {
  originalDescription =
      installMethod(zib::Class::named("NSError"), "localizedDescription", &localizedDescription);
}

}  // namespace sim
