#include "Simulator/Host/HostClasses.h"

#include <array>
#include <utility>

#include "Simulator/FirebaseMessaging/DelegateMessages.h"
#include "Simulator/Json/Values.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/UIKit/DelegateMessages.h"
#include "Simulator/UserNotifications/DelegateMessages.h"
#include "ZibMessaging/Private/TokenText.h"
#include "ZibPlatform/Foundation/Data.h"
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
using zib::objc::UInteger;

// A method only knows its receiver and selector, not which class it was written for: with a
// superclass that has it too, that would be ambiguous. So each class gets functions of its own,
// numbered by its slot here.
std::array<HostClassDescription, maximumHostClasses>& slots() {
  static std::array<HostClassDescription, maximumHostClasses> slots;
  return slots;
}

void record(const HostClassDescription& cls, id receiver, SEL selector, Json fields) {
  fields["class"] = cls.name;
  fields["receiver"] = Class::visibleClassOf(receiver).name();
  fields["selector"] = zib::objc::nameOfSelector(selector);
  Timeline::shared().add("host", fields);
}

Json textOrNull(id string) { return string == nullptr ? Json() : Json(zib::utf8From(string)); }

Json urlText(id object) {
  const auto url = zib::URL::retained(object);
  return url ? Json(url->absoluteString()) : Json();
}

template <std::size_t Slot>
struct Methods {
  static const HostClassDescription& cls() { return slots()[Slot]; }

  static void didRegister(id self, SEL selector, id /*application*/, id token) {
    record(cls(), self, selector, {{"token", zib::hexText(zib::bytesOf(token))}});
  }

  static void didFail(id self, SEL selector, id /*application*/, id error) {
    Json fields = Json::object();
    if (error != nullptr) fields["error"] = jsonFrom(zib::Error::fromNative(error));
    record(cls(), self, selector, fields);
  }

  static BOOL openURL(id self, SEL selector, id /*application*/, id url, id /*options*/) {
    record(cls(), self, selector, {{"url", urlText(url)}});
    return static_cast<BOOL>(cls().openURLReturns);
  }

  static void openURLContexts(id self, SEL selector, id /*scene*/, id contexts) {
    Json urls = Json::array();
    for (const zib::Object& context : zib::elementsOf(contexts)) {
      const auto url = zib::urlOfContext(context.raw());
      urls.push_back(url ? Json(url->absoluteString()) : Json());
    }
    record(cls(), self, selector, {{"urls", urls}});
  }

  static void willPresent(id self, SEL selector, id /*center*/, id notification,
                          BlockLayout* completion) {
    const auto userInfo = zib::Notification::retained(notification).userInfo();
    record(cls(), self, selector, {{"userInfo", jsonFrom(userInfo.values())}});
    if (cls().completes) zib::Block<void(UInteger)>::call(completion, cls().options);
  }

  static void didReceive(id self, SEL selector, id /*center*/, id object, BlockLayout* completion) {
    const auto response = zib::NotificationResponse::retained(object);
    record(cls(), self, selector,
           {{"action", response.actionIdentifier()},
            {"userInfo", jsonFrom(response.notification().userInfo().values())}});
    if (cls().completes) zib::Block<void()>::call(completion);
  }

  static void token(id self, SEL selector, id /*messaging*/, id token) {
    record(cls(), self, selector, {{"token", textOrNull(token)}});
  }

  static Class registerClass(Class superclass) {
    zib::ClassBuilder builder(cls().name.c_str(), superclass);
    for (const HostMethod method : cls().implements) add(builder, method);
    return builder.registerClass();
  }

  static void add(zib::ClassBuilder& builder, HostMethod method) {
    switch (method) {
      case HostMethod::didRegister:
        builder.method(uikit::didRegister.data(), &didRegister);
        break;
      case HostMethod::didFail:
        builder.method(uikit::didFailToRegister.data(), &didFail);
        break;
      case HostMethod::openURL:
        builder.method(uikit::openURLWithOptions.data(), &openURL);
        break;
      case HostMethod::openURLContexts:
        builder.method(uikit::sceneOpenURLContexts.data(), &openURLContexts);
        break;
      case HostMethod::willPresent:
        builder.method(usernotifications::willPresent.data(), &willPresent);
        break;
      case HostMethod::didReceive:
        builder.method(usernotifications::didReceive.data(), &didReceive);
        break;
      case HostMethod::token:
        builder.method(firebase::didReceiveToken.data(), &token);
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
  Class superclass = classNamed<"NSObject">();
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
  return zib::Object::adopted(
      zib::send<id>(Class::named(className.c_str()).object(), zib::selector<"new">()));
}

}  // namespace sim
