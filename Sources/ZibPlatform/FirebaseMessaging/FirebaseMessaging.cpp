#include "ZibPlatform/FirebaseMessaging/FirebaseMessaging.h"

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

FirebaseMessaging FirebaseMessaging::find() {
  const Class cls = classNamed<"FIRMessaging">();
  if (!cls || !cls.derivesFrom(classNamed<"NSObject">())) return FirebaseMessaging(Found::nothing);
  const Selector messaging = selector<"messaging">();
  if (!respondsTo(cls.object(), messaging)) return FirebaseMessaging(Found::classOnly);
  const objc::id instance = sendToClass<"FIRMessaging", "performSelector:">(messaging.raw());
  if (!isNSObject(instance)) return FirebaseMessaging(Found::classMethod);
  return FirebaseMessaging(Found::instance, Object::retained(instance));
}

objc::id FirebaseMessaging::delegate() const {
  const Selector delegate = selector<"delegate">();
  if (!respondsTo(native(), delegate)) return nullptr;
  const auto object = send<objc::id>(native(), selector<"performSelector:">(), delegate.raw());
  const bool isProxy = Class::ofObject(object).derivesFrom(classNamed<"NSProxy">());
  return isNSObject(object) || isProxy ? object : nullptr;
}

bool FirebaseMessaging::setDelegate(objc::id delegate) const {
  const Selector setter = selector<"setDelegate:">();
  if (!respondsTo(native(), setter)) return false;
  send<objc::id>(native(), selector<"performSelector:withObject:">(), setter.raw(), delegate);
  return true;
}

}  // namespace zib
