#include "ZibPlatform/ObjectiveC/Forwarding.h"

#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

objc::id targetOf(objc::id object, Selector selector) {
  const Selector ask = zib::selector<"forwardingTargetForSelector:">();
  if (!Class::ofObject(object).instanceMethod(ask)) return nullptr;
  const auto target = send<objc::id>(object, ask, selector.raw());
  return target == object ? nullptr : target;
}

// Whether the object has a method of its own there, and not only a root class's.
bool overrides(objc::id object, Selector selector) {
  const Class owner = Class::ofObject(object).ownerOf(selector);
  return owner && owner.superclass();
}

// A root class's own method only says that it does not know the selector.
bool takesInvocations(objc::id object, Selector selector) {
  return overrides(object, zib::selector<"forwardInvocation:">()) &&
         send<objc::id>(object, zib::selector<"methodSignatureForSelector:">(), selector.raw()) !=
             nullptr;
}

Destination methodOf(objc::id target, Selector selector) {
  if (!respondsTo(target, selector)) return {};
  return {objc::functionCast<objc::IMP>(objc::functionFor<void()>(target, selector.raw())), target};
}

}  // namespace

#if defined(__APPLE__)

objc::IMP forwarderOf(Class cls, Selector selector) {
  return objc::methodImplementation(cls.raw(), selector.raw());
}

static objc::IMP forwarderFor(objc::id, Selector, objc::IMP forwarder) { return forwarder; }

#else

objc::IMP forwarderOf(Class, Selector) { return nullptr; }

static objc::IMP forwarderFor(objc::id object, Selector selector, objc::IMP) {
  return objc::makeForwarder == nullptr ? nullptr : objc::makeForwarder(object, selector.raw());
}

#endif

Destination forwardedTo(objc::id object, Selector selector, objc::IMP forwarder) {
  if (!respondsTo(object, selector)) return {};
  if (const objc::id target = targetOf(object, selector)) return methodOf(target, selector);
  if (!takesInvocations(object, selector)) return {};
  return {forwarderFor(object, selector, forwarder), object};
}

Destination namedByNow(objc::id object, Selector selector) {
  // One that says nothing of its own about what it answers is not asked for what its target has.
  if (!overrides(object, zib::selector<"respondsToSelector:">())) return {};
  const objc::id target = targetOf(object, selector);
  return target == nullptr ? Destination{} : methodOf(target, selector);
}

}  // namespace zib
