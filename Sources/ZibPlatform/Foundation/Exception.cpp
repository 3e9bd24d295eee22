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
  const auto textOf = [&](Selector property) {
    const objc::id text = send<objc::id>(exception, property);
    return isString(text) ? utf8From(text) : std::string();
  };
  const std::string reason = textOf(selector<"reason">());
  return textOf(selector<"name">()) + (reason.empty() ? reason : ": " + reason);
}

}  // namespace zib
