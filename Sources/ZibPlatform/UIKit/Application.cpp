#include "ZibPlatform/UIKit/Application.h"

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

std::optional<Application> Application::shared() {
  const Class cls = classNamed<"UIApplication">();
  if (!cls || !cls.derivesFrom(classNamed<"NSObject">())) return std::nullopt;
  const objc::id application =
      sendToClass<"UIApplication", "performSelector:">(selector<"sharedApplication">().raw());
  if (application == nullptr) return std::nullopt;
  return Application(Object::retained(application));
}

bool Application::isApplicationObject() const { return isKind<"UIApplication">(native()); }

objc::id Application::delegate() const { return send<objc::id>(native(), selector<"delegate">()); }

void Application::renewDelegate() const {
  const Selector set = selector<"setDelegate:">();
  const Object current = Object::retained(delegate());
  if (!current || !respondsTo(native(), set)) return;
  send<void>(native(), set, objc::id{});
  send<void>(native(), set, current.raw());
}

void Application::registerForRemoteNotifications() const {
  send<void>(native(), selector<"registerForRemoteNotifications">());
}

bool Application::openThen(const URL& url, const OpenCompletion& completion) const {
  const Selector open = selector<"openURL:options:completionHandler:">();
  if (!respondsTo(native(), open)) return false;
  const auto implementation =
      send<objc::IMP>(native(), selector<"methodForSelector:">(), open.raw());
  callImplementation<void>(implementation, native(), open, url.native(), Dictionary().native(),
                           completion.raw());
  return true;
}

}  // namespace zib
