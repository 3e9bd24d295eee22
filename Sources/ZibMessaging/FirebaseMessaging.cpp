#include "ZibMessaging/FirebaseMessaging.h"

#include "Platform/Class.h"
#include "Platform/Send.h"

using zib::classNamed;
using zib::selector;
using zib::send;
using zib::objc::id;

FirebaseMessaging FirebaseMessaging::find() {
  const zib::Class cls = classNamed<"FIRMessaging">();
  if (!cls || !cls.derivesFrom(classNamed<"NSObject">())) return FirebaseMessaging(Found::nothing);
  const zib::Selector messaging = selector<"messaging">();
  if (!zib::respondsTo(cls.object(), messaging)) return FirebaseMessaging(Found::classOnly);
  const id instance = send<id>(cls.object(), selector<"performSelector:">(), messaging.raw());
  if (!zib::isNSObject(instance)) return FirebaseMessaging(Found::classMethod);
  return FirebaseMessaging(Found::instance, zib::Object::retained(instance));
}

id FirebaseMessaging::delegate() const {
  const zib::Selector delegate = selector<"delegate">();
  if (!zib::respondsTo(instance_.raw(), delegate)) return nullptr;
  const id object = send<id>(instance_.raw(), selector<"performSelector:">(), delegate.raw());
  return zib::isNSObject(object) ? object : nullptr;
}

bool FirebaseMessaging::setDelegate(id delegate) const {
  const zib::Selector setter = selector<"setDelegate:">();
  if (!zib::respondsTo(instance_.raw(), setter)) return false;
  send<id>(instance_.raw(), selector<"performSelector:withObject:">(), setter.raw(), delegate);
  return true;
}
