#include "ZibPlatform/Foundation/Error.h"

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

Error Error::fromNative(objc::id error) {
  if (!isKind<"NSError">(error)) {
    return {"ZibMessaging", 0, "The platform reported a failure without an error object", {}};
  }
  return {utf8From(send<objc::id>(error, selector<"domain">())),
          send<objc::Integer>(error, selector<"code">()),
          utf8From(send<objc::id>(error, selector<"localizedDescription">())),
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
