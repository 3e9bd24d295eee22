#include "ZibPlatform/UserNotifications/UserNotifications.h"

#include "ZibPlatform/Foundation/Process.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

constexpr objc::UInteger noOptions = 0;

Object emptyArray() { return objectFrom(Value(Array())); }

Object makeAction(const NotificationAction& action) {
  return Object::retained(send<objc::id>(classNamed<"UNNotificationAction">().object(),
                                         selector<"actionWithIdentifier:title:options:">(),
                                         makeString(action.identifier).raw(),
                                         makeString(action.title).raw(), noOptions));
}

Object makeCategory(const NotificationCategory& category) {
  const Object actions = emptyArray();
  for (const NotificationAction& action : category.actions) {
    send<void>(actions.raw(), selector<"addObject:">(), makeAction(action).raw());
  }
  return Object::retained(send<objc::id>(
      classNamed<"UNNotificationCategory">().object(),
      selector<"categoryWithIdentifier:actions:intentIdentifiers:options:">(),
      makeString(category.identifier).raw(), actions.raw(), emptyArray().raw(), noOptions));
}

objc::id userInfoOf(objc::id notification) {
  const objc::id request = send<objc::id>(notification, selector<"request">());
  const objc::id content = send<objc::id>(request, selector<"content">());
  const objc::id userInfo = send<objc::id>(content, selector<"userInfo">());
  return isKind<"NSDictionary">(userInfo) ? userInfo : nullptr;
}

}  // namespace

Dictionary Notification::userInfo() const { return Dictionary::retained(nativeUserInfo()); }

objc::id Notification::nativeUserInfo() const { return userInfoOf(native_.raw()); }

std::string NotificationResponse::actionIdentifier() const {
  return utf8From(actionText().native());
}

StringRef NotificationResponse::actionText() const {
  return StringRef::of(send<objc::id>(native_.raw(), selector<"actionIdentifier">()));
}

objc::id NotificationResponse::nativeUserInfo() const {
  return userInfoOf(send<objc::id>(native_.raw(), selector<"notification">()));
}

Notification NotificationResponse::notification() const {
  return Notification::retained(send<objc::id>(native_.raw(), selector<"notification">()));
}

NotificationCenter NotificationCenter::current() {
  if (isTestProcessWithoutApp()) return NotificationCenter({});
  return NotificationCenter(Object::retained(send<objc::id>(
      classNamed<"UNUserNotificationCenter">().object(), selector<"currentNotificationCenter">())));
}

objc::id NotificationCenter::delegate() const {
  return send<objc::id>(native_.raw(), selector<"delegate">());
}

void NotificationCenter::setDelegate(objc::id delegate) const {
  send<void>(native_.raw(), selector<"setDelegate:">(), delegate);
}

void NotificationCenter::requestAuthorization(
    objc::UInteger options, std::function<void(bool, std::optional<Error>)> answer) const {
  const auto handler = Block<void(objc::BOOL, objc::id)>::from(
      [answer = std::move(answer)](objc::BOOL granted, objc::id error) {
        answer(granted != 0,
               error == nullptr ? std::nullopt : std::optional(Error::fromNative(error)));
      });
  send<void>(native_.raw(), selector<"requestAuthorizationWithOptions:completionHandler:">(),
             options, handler.raw());
}

void NotificationCenter::setCategories(std::span<const NotificationCategory> categories) const {
  const Object set =
      Object::adopted(send<objc::id>(classNamed<"NSMutableSet">().object(), selector<"new">()));
  for (const NotificationCategory& category : categories) {
    send<void>(set.raw(), selector<"addObject:">(), makeCategory(category).raw());
  }
  send<void>(native_.raw(), selector<"setNotificationCategories:">(), set.raw());
}

}  // namespace zib
