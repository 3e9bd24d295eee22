#include "ZibPlatform/Foundation/Exception.h"

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/HandledException.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

std::unique_ptr<std::string> describeHandledPlatformException() {
  const objc::id exception = objc::handledException();
  if (exception == nullptr) return nullptr;
  auto description = std::make_unique<std::string>();
  if (isKind<"NSException">(exception)) {
    const Utf8 reason(StringRef::of(send<objc::id>(exception, selector<"reason">())));
    const Utf8 name(StringRef::of(send<objc::id>(exception, selector<"name">())));
    *description = joined({name.view(), reason.view().empty() ? "" : ": ", reason.view()});
  } else {
    *description = joined({"an object of class ", Class::ofObject(exception).name()});
  }
  return description;
}

}  // namespace zib
