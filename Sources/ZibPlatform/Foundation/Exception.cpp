#include "ZibPlatform/Foundation/Exception.h"

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/HandledException.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

std::optional<std::string> describeHandledPlatformException() {
  const objc::id exception = objc::handledException();
  if (exception == nullptr) return std::nullopt;
  if (!isKind<"NSException">(exception)) {
    return std::string("an object of class ") + Class::ofObject(exception).name();
  }
  const auto reason = StringRef::of(send<objc::id>(exception, selector<"reason">())).utf8();
  const auto name = StringRef::of(send<objc::id>(exception, selector<"name">())).utf8();
  return name + (reason.empty() ? reason : ": " + reason);
}

}  // namespace zib
