#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"

#include "Simulator/FirebaseMessaging/DelegateMessages.h"
#include "Simulator/ObjectiveC/DelegateCall.h"
#include "Simulator/ObjectiveC/HostsAct.h"
#include "Simulator/ObjectiveC/WeakReference.h"
#include "Simulator/Timeline/Timeline.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim::firebase {
namespace {

using zib::Class;
using zib::classNamed;
using zib::Object;
using zib::Selector;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;

constexpr const char* messagingClass = "FIRMessaging";

struct MessagingState {
  Pieces pieces;
  Object messaging;
  WeakReference delegate;
  // What the host keeps alive.
  Object hostsDelegate;
};

MessagingState& state() {
  static zib::NeverDestroyed<MessagingState> state([] { return MessagingState(); });
  return *state;
}

id sharedMessaging(id, SEL) { return state().pieces.instance ? state().messaging.raw() : nullptr; }

id getDelegate(id, SEL) { return state().delegate.get(); }

void recordAndSetDelegate(id, SEL, id delegate) {
  if (!HostsAct::isRunning()) {
    const Json name = delegate == nullptr ? Json() : Json(classNameOf(delegate));
    Timeline::shared().add("system", {{"operation", "setFirebaseDelegate"}, {"class", name}});
  }
  state().delegate.set(delegate);
}

// The answer that NSObject gives for the receiver's class.
BOOL inherited(id self, SEL respondsToSelector, SEL asked) {
  const Class root = classNamed<"NSObject">();
  const Class from = Class::ofObject(self) == Class::ofObject(Class::named(messagingClass).object())
                         ? Class::ofObject(root.object())
                         : root;
  const auto method = from.instanceMethod(Selector(respondsToSelector));
  return zib::callImplementation<BOOL>(method.implementation(), self, Selector(respondsToSelector),
                                       asked);
}

BOOL classRespondsTo(id self, SEL respondsToSelector, SEL asked) {
  const bool isMissing = Selector(asked) == selector<"messaging">() && !state().pieces.classMethod;
  return isMissing ? BOOL{0} : inherited(self, respondsToSelector, asked);
}

BOOL instanceRespondsTo(id self, SEL respondsToSelector, SEL asked) {
  const Selector selector(asked);
  const Pieces& pieces = state().pieces;
  const bool isMissing = (selector == zib::selector<"delegate">() && !pieces.delegateProperty) ||
                         (selector == zib::selector<"setDelegate:">() && !pieces.settable);
  return isMissing ? BOOL{0} : inherited(self, respondsToSelector, asked);
}

Object makeMessaging() {
  const Class cls = zib::ClassBuilder(messagingClass, classNamed<"NSObject">())
                        .classMethod("messaging", &sharedMessaging)
                        .classMethod("respondsToSelector:", &classRespondsTo)
                        .method("respondsToSelector:", &instanceRespondsTo)
                        .method("delegate", &getDelegate)
                        .method("setDelegate:", &recordAndSetDelegate)
                        .registerClass();
  return zib::create(cls);
}

// As Firebase does for its own parts.
void sayThatItIsConfigured() {
  send<void>(zib::sendToClass<"NSNotificationCenter", "defaultCenter">(),
             selector<"postNotificationName:object:">(),
             zib::makeString("FIRAppReadyToConfigureSDKNotification").raw(), id{nullptr});
}

}  // namespace

std::vector<std::string_view> classNames() { return {messagingClass}; }

void set(const Pieces& pieces) {
  const bool wasThere = state().messaging && state().pieces.instance;
  state().pieces = pieces;
  if (!state().messaging) state().messaging = makeMessaging();
  if (pieces.instance && !wasThere) sayThatItIsConfigured();
}

void setDelegate(Object delegate) {
  // As hosts do, since others may stand before the setter.
  const HostsAct act;
  send<void>(messaging(), selector<"setDelegate:">(), delegate.raw());
  state().hostsDelegate = std::move(delegate);
}

id delegate() { return state().delegate.get(); }
id messaging() { return state().messaging.raw(); }

bool deliverToken(const std::optional<std::string>& token) {
  if (!responds(delegate(), selector<didReceiveToken>())) return false;
  const Object text = token ? zib::makeString(*token) : Object();
  sendToken(delegate(), messaging(), text.raw());
  return true;
}

}  // namespace sim::firebase
