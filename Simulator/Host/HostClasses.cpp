#include "Simulator/Host/HostClasses.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/FirebaseMessaging/DelegateMessages.h"
#include "Simulator/Host/ForwardingObject.h"
#include "Simulator/Host/SuperCall.h"
#include "Simulator/Json/Values.h"
#include "Simulator/ObjectiveC/DelegateCall.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/UIKit/DelegateMessages.h"
#include "Simulator/UserNotifications/DelegateMessages.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Elements.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Send.h"
#include "ZibPlatform/UIKit/Scenes.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

namespace sim {
namespace {

using zib::BlockLayout;
using zib::Class;
using zib::classNamed;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;

// A method only knows its receiver and selector, not which class it was written for: with a
// superclass that has it too, that would be ambiguous. So each class gets functions of its own,
// numbered by its slot here.
std::array<HostClassDescription, maximumHostClasses>& slots() {
  static std::array<HostClassDescription, maximumHostClasses> slots;
  return slots;
}

void record(const HostClassDescription& cls, id receiver, SEL selector, Json fields) {
  fields["class"] = cls.name;
  fields["receiver"] = classNameOf(receiver);
  fields["selector"] = zib::objc::nameOfSelector(selector);
  Timeline::shared().add("host", fields);
}

void raise(const RaisedException& exception) {
  const id object = zib::sendToClass<"NSException", "exceptionWithName:reason:userInfo:">(
      zib::makeString(exception.name).raw(), zib::makeString(exception.reason).raw(), id{nullptr});
  zib::send<void>(object, zib::selector<"raise">());
}

Json textOrNull(id string) { return string == nullptr ? Json() : Json(zib::utf8From(string)); }

Json urlText(id object) {
  const auto url = zib::URL::retained(object);
  return url ? Json(url->text().utf8()) : Json();
}

// What every method does before it answers or completes: it records, raises and calls its
// superclass's, as the description says.
template <class Result, class... Arguments>
void begin(HostMethod method, const HostClassDescription& cls, id self, SEL selector,
           const Json& fields, Arguments... arguments) {
  record(cls, self, selector, fields);
  if (const auto raised = cls.throws.find(method); raised != cls.throws.end()) {
    raise(raised->second);
  }
  const auto super = cls.callsSuper.find(method);
  if (super == cls.callsSuper.end()) return;
  const Class owner = Class::named(cls.name.c_str());
  switch (super->second) {
    case SuperCall::same:
      sendToSuper<Result>(owner, self, selector, keptArgument(arguments)...);
      return;
    case SuperCall::filtered:
      sendToSuper<Result>(owner, self, selector, filteredArgument(arguments)...);
      return;
    case SuperCall::later:
      Scheduler::shared().submitNow([owner, receiver = zib::Object::retained(self), selector,
                                     kept = std::tuple(keptArgument(arguments)...)] {
        std::apply(
            [&](const auto&... each) {
              sendToSuper<Result>(owner, receiver.raw(), selector, each...);
            },
            kept);
      });
      return;
  }
}

template <class... Arguments>
void complete(Completes when, BlockLayout* completion, Arguments... arguments) {
  using Completion = zib::Block<void(Arguments...)>;
  const auto call = [kept = Completion::copied(completion), arguments...] { kept(arguments...); };
  switch (when) {
    case Completes::never:
      return;
    case Completes::twice:
      call();
      [[fallthrough]];
    case Completes::once:
      call();
      return;
    case Completes::later:
      Scheduler::shared().submitNow(call);
      return;
    case Completes::elsewhere:
      Scheduler::shared().submitElsewhere("elsewhere", call);
      return;
  }
}

Json urlsOf(id contexts) {
  Json urls = Json::array();
  for (const id context : zib::elements(contexts)) {
    const auto url = zib::urlOfContext(context);
    urls.push_back(url ? Json(url->text().utf8()) : Json());
  }
  return urls;
}

Json errorFields(id error) {
  Json fields = Json::object();
  if (error != nullptr) fields["error"] = jsonFrom(zib::Error::fromNative(error));
  return fields;
}

template <std::size_t Slot>
struct Methods {
  static const HostClassDescription& cls() { return slots()[Slot]; }

  static void didRegister(id self, SEL selector, id application, id token) {
    begin<void>(HostMethod::didRegister, cls(), self, selector,
                {{"token", hexFrom(zib::bytesOf(token))}}, application, token);
  }

  static void didFail(id self, SEL selector, id application, id error) {
    begin<void>(HostMethod::didFail, cls(), self, selector, errorFields(error), application, error);
  }

  static BOOL openURL(id self, SEL selector, id application, id url, id options) {
    begin<BOOL>(HostMethod::openURL, cls(), self, selector, {{"url", urlText(url)}}, application,
                url, options);
    return static_cast<BOOL>(cls().openURLReturns);
  }

  static BOOL openURLFromSource(id self, SEL selector, id application, id url, id source,
                                id annotation) {
    begin<BOOL>(HostMethod::openURLFromSource, cls(), self, selector, {{"url", urlText(url)}},
                application, url, source, annotation);
    return static_cast<BOOL>(cls().openURLReturns);
  }

  static BOOL handleOpenURL(id self, SEL selector, id application, id url) {
    begin<BOOL>(HostMethod::handleOpenURL, cls(), self, selector, {{"url", urlText(url)}},
                application, url);
    return static_cast<BOOL>(cls().openURLReturns);
  }

  static void openURLContexts(id self, SEL selector, id scene, id contexts) {
    begin<void>(HostMethod::openURLContexts, cls(), self, selector, {{"urls", urlsOf(contexts)}},
                scene, contexts);
  }

  static void willPresent(id self, SEL selector, id center, id notification,
                          BlockLayout* completion) {
    const auto userInfo = zib::Notification::retained(notification).userInfo();
    begin<void>(HostMethod::willPresent, cls(), self, selector,
                {{"userInfo", jsonFrom(valuesOf(userInfo))}}, center, notification, completion);
    complete(cls().completes, completion, cls().options);
  }

  static void didReceive(id self, SEL selector, id center, id object, BlockLayout* completion) {
    const auto response = zib::NotificationResponse::retained(object);
    begin<void>(HostMethod::didReceive, cls(), self, selector,
                {{"action", response.actionIdentifier().utf8()},
                 {"userInfo", jsonFrom(valuesOf(response.userInfo()))}},
                center, object, completion);
    complete(cls().completes, completion);
  }

  static void token(id self, SEL selector, id messaging, id token) {
    begin<void>(HostMethod::token, cls(), self, selector, {{"token", textOrNull(token)}}, messaging,
                token);
  }

  static Class registerClass(Class superclass) {
    const HostClassDescription& description = cls();
    const char* const name = description.name.c_str();
    const Class registered =
        description.forwardsTo.empty()
            ? zib::ClassBuilder(name, superclass).registerClass()
            : registerForwardingClass(name, superclass, description.forwarding);
    for (const HostMethod method : description.implements) add(registered, method);
    return registered;
  }

  static void add(Class registered, HostMethod method) {
    switch (method) {
      case HostMethod::didRegister:
        installMethod(registered, uikit::didRegister.data(), &didRegister);
        break;
      case HostMethod::didFail:
        installMethod(registered, uikit::didFailToRegister.data(), &didFail);
        break;
      case HostMethod::openURL:
        installMethod(registered, uikit::openURLWithOptions.data(), &openURL);
        break;
      case HostMethod::openURLFromSource:
        installMethod(registered, uikit::openURLFromSource.data(), &openURLFromSource);
        break;
      case HostMethod::handleOpenURL:
        installMethod(registered, uikit::handleOpenURL.data(), &handleOpenURL);
        break;
      case HostMethod::openURLContexts:
        installMethod(registered, uikit::sceneOpenURLContexts.data(), &openURLContexts);
        break;
      case HostMethod::willPresent:
        installMethod(registered, usernotifications::willPresent.data(), &willPresent);
        break;
      case HostMethod::didReceive:
        installMethod(registered, usernotifications::didReceive.data(), &didReceive);
        break;
      case HostMethod::token:
        installMethod(registered, firebase::didReceiveToken.data(), &token);
        break;
    }
  }
};

using Register = Class (*)(Class superclass);

template <std::size_t... Slots>
constexpr std::array<Register, sizeof...(Slots)> makeRegisters(
    std::index_sequence<Slots...> /*slots*/) {
  return {&Methods<Slots>::registerClass...};
}

void registerOne(const HostClassDescription& description,
                 const HostClassDescriptions& descriptions) {
  static constexpr auto registers = makeRegisters(std::make_index_sequence<maximumHostClasses>());
  static std::size_t used = 0;
  if (Class::named(description.name.c_str())) return;
  const bool isProxy = description.forwarding == Forwarding::proxy;
  Class superclass = isProxy ? classNamed<"NSProxy">() : classNamed<"NSObject">();
  if (!description.superclass.empty()) {
    registerOne(descriptions.at(description.superclass), descriptions);
    superclass = Class::named(description.superclass.c_str());
  }
  slots().at(used) = description;
  registers.at(used++)(superclass);
}

}  // namespace

void registerHostClasses(const HostClassDescriptions& descriptions) {
  for (const auto& [name, description] : descriptions) registerOne(description, descriptions);
}

zib::Object makeHostObject(const std::string& className) {
  const Class cls = Class::named(className.c_str());
  for (std::string name = className; !name.empty();) {
    const HostClassDescription& description =
        *std::find_if(slots().begin(), slots().end(),
                      [&](const HostClassDescription& slot) { return slot.name == name; });
    if (!description.forwardsTo.empty()) {
      return makeForwardingObject(cls, makeHostObject(description.forwardsTo));
    }
    name = description.superclass;
  }
  return zib::create(cls);
}

}  // namespace sim
