#include "ZibMessaging/Private/OlderURLMethods.h"

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

objc::id optionOf(objc::id options, const ConstantString& key) {
  return send<objc::id>(cast<"NSDictionary">(options), selector<"objectForKey:">(), key.object());
}

}  // namespace

objc::BOOL openWithOlderMethod(objc::id delegate, objc::id application, objc::id url,
                               objc::id options) {
  const Selector fromSource = selector<"application:openURL:sourceApplication:annotation:">();
  if (respondsTo(delegate, fromSource)) {
    return send<objc::BOOL>(
        delegate, fromSource, application, url,
        optionOf(options, constantString<"UIApplicationOpenURLOptionsSourceApplicationKey">),
        optionOf(options, constantString<"UIApplicationOpenURLOptionsAnnotationKey">));
  }
  const Selector handle = selector<"application:handleOpenURL:">();
  if (respondsTo(delegate, handle)) {
    return send<objc::BOOL>(delegate, handle, application, url);
  }
  return objc::BOOL{1};
}

}  // namespace zib
