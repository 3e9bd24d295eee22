#include "ZibPlatform/Foundation/Error.h"

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

Error Error::fromNative(objc::id error) {
  bool isError = false;
  objc::Integer code = 0;
  try {
    isError = isKind<"NSError">(error);
    if (isError) code = send<objc::Integer>(error, selector<"code">());
  } catch (...) {
    code = 0;
  }
  if (!isError) {
    return {"ZibMessaging", 0, "The platform reported a failure without an error object", {}};
  }
  return {textAnswered(error, selector<"domain">(), ""), code,
          textAnswered(error, selector<"localizedDescription">(),
                       "The platform reported an error that cannot be described"),
          Object::retained(error)};
}

Object Error::nativeError() const {
  if (native) return native;
  const Object userInfo = create<"NSMutableDictionary">();
  send<void>(userInfo.raw(), selector<"setObject:forKey:">(), makeString(description).raw(),
             constantString<"NSLocalizedDescription">.object());
  return create<"NSError", "initWithDomain:code:userInfo:">(
      makeString(domain).raw(), static_cast<objc::Integer>(code), userInfo.raw());
}

}  // namespace zib
