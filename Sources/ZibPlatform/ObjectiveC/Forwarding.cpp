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

// A root class's own method only says that it does not know the selector.
bool takesInvocations(objc::id object, Selector selector) {
  const Class owner = Class::ofObject(object).ownerOf(zib::selector<"forwardInvocation:">());
  return owner && owner.superclass() &&
         send<objc::id>(object, zib::selector<"methodSignatureForSelector:">(), selector.raw()) !=
             nullptr;
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
  if (const objc::id target = targetOf(object, selector)) {
    if (!respondsTo(target, selector)) return {};
    return {objc::functionCast<objc::IMP>(objc::functionFor<void()>(target, selector.raw())),
            target};
  }
  if (!takesInvocations(object, selector)) return {};
  return {forwarderFor(object, selector, forwarder), object};
}

}  // namespace zib
