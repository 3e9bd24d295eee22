#include "Simulator/Host/OtherLibrary.h"

#include "Simulator/FirebaseMessaging/DelegateMessages.h"
#include "Simulator/UIKit/DelegateMessages.h"
#include "Simulator/UserNotifications/DelegateMessages.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::BlockLayout;
using zib::Selector;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::IMP;
using zib::objc::SEL;

template <HostMethod method, class Signature>
struct Library;
template <HostMethod method, class Result, class... Arguments>
struct Library<method, Result(Arguments...)> {
  static inline IMP found = nullptr;

  static Result call(id self, SEL selector, Arguments... arguments) {
    return zib::callImplementation<Result>(found, self, Selector(selector), arguments...);
  }

  static bool install(zib::Class cls, const char* selector) {
    const zib::Method replaced = cls.instanceMethod(Selector(selector));
    if (found != nullptr || !replaced) return false;
    found = replaced.implementation();
    replaced.setImplementation(zib::objc::functionCast<IMP>(&call));
    return true;
  }
};

}  // namespace

bool replaceByOtherLibrary(const std::string& className, HostMethod method) {
  const auto cls = zib::Class::named(className.c_str());
  using Two = void(id, id);
  using WithCompletion = void(id, id, BlockLayout*);
  using enum HostMethod;
  switch (method) {
    case didRegister:
      return Library<didRegister, Two>::install(cls, uikit::didRegister.data());
    case didFail:
      return Library<didFail, Two>::install(cls, uikit::didFailToRegister.data());
    case openURL:
      return Library<openURL, BOOL(id, id, id)>::install(cls, uikit::openURLWithOptions.data());
    case openURLFromSource:
      return Library<openURLFromSource, BOOL(id, id, id, id)>::install(
          cls, uikit::openURLFromSource.data());
    case handleOpenURL:
      return Library<handleOpenURL, BOOL(id, id)>::install(cls, uikit::handleOpenURL.data());
    case openURLContexts:
      return Library<openURLContexts, Two>::install(cls, uikit::sceneOpenURLContexts.data());
    case willPresent:
      return Library<willPresent, WithCompletion>::install(cls,
                                                           usernotifications::willPresent.data());
    case didReceive:
      return Library<didReceive, WithCompletion>::install(cls,
                                                          usernotifications::didReceive.data());
    case token:
      return Library<token, Two>::install(cls, firebase::didReceiveToken.data());
  }
  return false;
}

}  // namespace sim
