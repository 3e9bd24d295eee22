#include "ZibPlatform/UIKit/Application.h"

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

std::optional<Application> Application::shared() {
  const Class cls = classNamed<"UIApplication">();
  if (!cls || !cls.derivesFrom(classNamed<"NSObject">())) return std::nullopt;
  const objc::id application = send<objc::id>(cls.object(), selector<"performSelector:">(),
                                              selector<"sharedApplication">().raw());
  if (application == nullptr) return std::nullopt;
  return Application(Object::retained(application));
}

bool Application::isApplicationObject() const {
  return isNSObject(native_.raw()) && isKindOf(native_.raw(), classNamed<"UIApplication">());
}

objc::id Application::delegate() const {
  return send<objc::id>(native_.raw(), selector<"delegate">());
}

void Application::renewDelegate() const {
  const Selector set = selector<"setDelegate:">();
  const Object current = Object::retained(delegate());
  if (!current || !respondsTo(native_.raw(), set)) return;
  send<void>(native_.raw(), set, objc::id{});
  send<void>(native_.raw(), set, current.raw());
}

void Application::registerForRemoteNotifications() const {
  send<void>(native_.raw(), selector<"registerForRemoteNotifications">());
}

bool Application::open(const URL& url, std::function<void(bool)> completion) const {
  const Selector open = selector<"openURL:options:completionHandler:">();
  if (!respondsTo(native_.raw(), open)) return false;
  const auto implementation =
      send<objc::IMP>(native_.raw(), selector<"methodForSelector:">(), open.raw());
  const auto handler = Block<void(objc::BOOL)>::from(
      [completion = std::move(completion)](objc::BOOL success) { completion(success != 0); });
  callImplementation<void>(implementation, native_.raw(), open, url.native(),
                           Dictionary().native().raw(), handler.raw());
  return true;
}

}  // namespace zib
