#include "ZibPlatform/UserNotifications/UserNotifications.h"

#include "ZibPlatform/Foundation/Process.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

constexpr objc::UInteger noOptions = 0;

// Both for as long as the current autorelease pool.
objc::id makeAction(const NotificationAction& action) {
  return sendToClass<"UNNotificationAction", "actionWithIdentifier:title:options:">(
      makeString(action.identifier).raw(), makeString(action.title).raw(), noOptions);
}
objc::id makeCategory(const NotificationCategory& category) {
  const auto actions = sendToClass<"NSMutableArray", "array">();
  for (const NotificationAction& action : category.actions) {
    send<void>(actions, selector<"addObject:">(), makeAction(action));
  }
  return sendToClass<"UNNotificationCategory",
                     "categoryWithIdentifier:actions:intentIdentifiers:options:">(
      makeString(category.identifier).raw(), actions, sendToClass<"NSMutableArray", "array">(),
      noOptions);
}

}  // namespace

Dictionary Notification::userInfo() const {
  const objc::id request = send<objc::id>(native(), selector<"request">());
  const objc::id content = send<objc::id>(request, selector<"content">());
  return Dictionary::retained(send<objc::id>(content, selector<"userInfo">()));
}

StringRef NotificationResponse::actionIdentifier() const {
  return StringRef::of(send<objc::id>(native(), selector<"actionIdentifier">()));
}

Dictionary NotificationResponse::userInfo() const {
  const objc::id notification = send<objc::id>(native(), selector<"notification">());
  return Borrowed<Notification>(notification)->userInfo();
}

NotificationCenter NotificationCenter::current() {
  if (isTestProcessWithoutApp()) return NotificationCenter({});
  return NotificationCenter(
      Object::retained(sendToClass<"UNUserNotificationCenter", "currentNotificationCenter">()));
}

objc::id NotificationCenter::delegate() const {
  return send<objc::id>(native(), selector<"delegate">());
}

void NotificationCenter::setDelegate(objc::id delegate) const {
  send<void>(native(), selector<"setDelegate:">(), delegate);
}

void NotificationCenter::request(objc::UInteger options, const AuthorizationAnswer& answer) const {
  send<void>(native(), selector<"requestAuthorizationWithOptions:completionHandler:">(), options,
             answer.raw());
}

void NotificationCenter::setCategories(std::span<const NotificationCategory> categories) const {
  const auto set = sendToClass<"NSMutableSet", "set">();
  for (const NotificationCategory& category : categories) {
    send<void>(set, selector<"addObject:">(), makeCategory(category));
  }
  send<void>(native(), selector<"setNotificationCategories:">(), set);
}

}  // namespace zib
