#include "ZibPlatform/UIKit/Application.h"

#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

// Renews the delegate where a setter of the host's own has raised, which could have left the
// application without one: by the system's setter, around the host's.
struct DelegateKeeper {
  objc::id application;
  objc::id delegate;
  bool isNeeded = true;

  ~DelegateKeeper() {
    if (!isNeeded) return;
    set(nullptr);
    set(delegate);
  }

  void set(objc::id either) const noexcept {
    const Selector set = selector<"setDelegate:">();
    const Method systems = classNamed<"UIApplication">().instanceMethod(set);
    if (!systems) return;
    try {
      callImplementation<void>(systems.implementation(), application, set, either);
    } catch (...) {
      return;  // the host's exception is the one that is told
    }
  }
};

}  // namespace

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
  DelegateKeeper keeper{native(), current.raw()};
  send<void>(native(), set, objc::id{});
  send<void>(native(), set, current.raw());
  keeper.isNeeded = false;
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
