#include "Simulator/Host/SuperCall.h"

#include <vector>

#include "Simulator/Json/Values.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Elements.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Send.h"
#include "ZibPlatform/UIKit/Scenes.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

namespace sim {
namespace {

using zib::Object;
using zib::objc::id;

Object filteredContexts(id contexts) {
  std::vector<Object> urls;
  for (const id context : zib::elements(contexts)) {
    if (const auto url = zib::urlOfContext(context)) {
      urls.push_back(Object::retained(url->native()));
    }
  }
  if (urls.size() > 1) urls.erase(urls.begin());
  return uikit::makeURLContexts(urls);
}

Object copiedNotification(id notification) {
  return usernotifications::makeNotification(
      valuesOf(zib::Notification::retained(notification).userInfo()));
}

Object copiedResponse(id object) {
  const auto response = zib::NotificationResponse::retained(object);
  return usernotifications::makeResponse(valuesOf(response.userInfo()),
                                         response.actionIdentifier().utf8());
}

Object copiedError(id object) {
  zib::Error error = zib::Error::fromNative(object);
  error.native = {};
  return error.nativeError();
}

}  // namespace

Object filteredArgument(id object) {
  if (object == nullptr) return {};
  if (zib::isKind<"NSSet">(object)) return filteredContexts(object);
  if (zib::isKind<"NSData">(object)) return zib::makeData(zib::bytesOf(object));
  if (zib::isKind<"NSString">(object)) return zib::makeString(zib::utf8From(object));
  if (zib::isKind<"NSError">(object)) return copiedError(object);
  if (const auto url = zib::URL::retained(object)) {
    return Object::retained(zib::URL::parse(url->text()).value().native());
  }
  if (zib::isKind<"NSDictionary">(object)) return zib::objectFrom(valueOf(object));
  if (zib::isKind<"UNNotification">(object)) return copiedNotification(object);
  if (zib::isKind<"UNNotificationResponse">(object)) return copiedResponse(object);
  return Object::retained(object);
}

}  // namespace sim
