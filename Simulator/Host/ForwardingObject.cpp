#include "Simulator/Host/ForwardingObject.h"

#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::Class;
using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;

constexpr const char* targetVariable = "forwardingTarget";

id targetOf(id self) { return static_cast<id>(pointerVariable(self, targetVariable)); }

Class rootOf(id self) {
  Class root = Class::ofObject(self);
  while (root.superclass()) root = root.superclass();
  return root;
}

template <class Result, class... Arguments>
Result sendInherited(id self, zib::Selector method, Arguments... arguments) {
  return zib::callImplementation<Result>(rootOf(self).instanceMethod(method).implementation(), self,
                                         method, arguments...);
}

bool hasMethod(id self, zib::Selector method) {
  return static_cast<bool>(Class::ofObject(self).instanceMethod(method));
}

BOOL respondsToSelector(id self, SEL, SEL asked) {
  const zib::Selector method(asked);
  return static_cast<BOOL>(hasMethod(self, method) || zib::respondsTo(targetOf(self), method));
}

id forwardingTarget(id self, SEL, SEL asked) {
  return zib::respondsTo(targetOf(self), zib::Selector(asked)) ? targetOf(self) : nullptr;
}

id methodSignature(id self, SEL command, SEL asked) {
  if (!hasMethod(self, zib::Selector(asked))) {
    return send<id>(targetOf(self), zib::Selector(command), asked);
  }
  return sendInherited<id>(self, zib::Selector(command), asked);
}

void forwardInvocation(id self, SEL, id invocation) {
  send<void>(invocation, selector<"invokeWithTarget:">(), targetOf(self));
}

void dealloc(id self, SEL) {
  zib::objc::release(targetOf(self));
  sendInherited<void>(self, selector<"dealloc">());
}

}  // namespace

Class registerForwardingClass(const char* name, Class superclass, Forwarding forwarding) {
  objc_class* const raw = zib::objc::allocateClassPair(superclass.raw(), name, 0);
  addPointerVariable(raw, targetVariable, "@");
  zib::objc::registerClassPair(raw);
  const Class cls(raw);
  installMethod(cls, "respondsToSelector:", &respondsToSelector);
  // Beside a named target too: not every runtime asks for one before it makes an invocation.
  installMethod(cls, "methodSignatureForSelector:", &methodSignature);
  installMethod(cls, "forwardInvocation:", &forwardInvocation);
  if (forwarding == Forwarding::target) {
    installMethod(cls, "forwardingTargetForSelector:", &forwardingTarget);
  }
  installMethod(cls, "dealloc", &dealloc);
  return cls;
}

Object makeForwardingObject(Class cls, const Object& target) {
  Object object = Object::adopted(zib::allocate(cls));
  object_setInstanceVariable(object.raw(), targetVariable, zib::objc::retain(target.raw()));
  return object;
}

}  // namespace sim
