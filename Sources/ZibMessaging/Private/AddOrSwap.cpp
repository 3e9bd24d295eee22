#include "ZibMessaging/Private/AddOrSwap.h"

#include "ZibMessaging/Private/Interceptors.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Forwarding.h"

namespace zib {
namespace {

// On a class that is intercepted already there is nothing to save: saving an interceptor as the
// host's method could make it forward to itself.
void swap(Row row, Class delegateClass, Method hostMethod) {
  const Selector selector(interceptionOf(row).hostSelector);
  const objc::IMP original = hostMethod.implementation();
  if (!isInterceptor(row, original)) {
    const Class owner = delegateClass.ownerOf(selector);
    const FreeInstallation free = nextInstallation(row, owner);
    if (free.place != nullptr) {
      // Before the method is replaced, so that a callback on another thread is never left without
      // its host.
      free.place->record(Installed::swapped, owner, selector, original);
      hostMethod.setImplementation(interceptorFunction(row, free.number));
    }
  }
  logLine("  ✓ Swapped: ", interceptionOf(row).logName);
}

// Not to a root class, though the delegate may call that its own: every object would have the
// method.
Installed add(Row row, objc::id delegate, Class visible, Installed how) {
  Class owner = visible.superclass() ? visible : Class::ofObject(delegate);
  if (!owner.superclass()) return Installed::nothing;
  const Selector selector(interceptionOf(row).hostSelector);
  const FreeInstallation free = nextInstallation(row, owner);
  if (free.place == nullptr) return Installed::nothing;
  const objc::IMP forwarder = forwarderOf(owner, selector);
  free.place->record(how, owner, selector, forwarder);
  owner.addMethod(selector, interceptorFunction(row, free.number),
                  interceptorMethod(row).typeEncoding());
  logLine("  + Added: ", interceptionOf(row).logName);
  // Who says no all the same speaks for others, and can be asked each time.
  if (how == Installed::added && !respondsTo(delegate, selector)) {
    free.place->record(Installed::forwarding, owner, selector, forwarder);
  }
  return how;
}

}  // namespace

Installed addOrSwap(Row row, objc::id delegate, Class visible) {
  if (swapIfPresent(row, delegate, visible) == Installed::swapped) return Installed::swapped;
  // Before the class has the method, after which the delegate says yes in any case, and before a
  // place is taken, since the delegate may raise.
  const bool answers = respondsTo(delegate, Selector(interceptionOf(row).hostSelector));
  // Some get their methods when they are asked.
  if (swapIfPresent(row, delegate, visible) == Installed::swapped) return Installed::swapped;
  return add(row, delegate, visible, answers ? Installed::forwarding : Installed::added);
}

Installed swapIfPresent(Row row, objc::id delegate, Class /*visible*/) {
  // What the runtime would call, even where that belongs to a hidden subclass.
  const Class delegateClass = Class::ofObject(delegate);
  const Method hostMethod =
      delegateClass.instanceMethod(Selector(interceptionOf(row).hostSelector));
  if (!hostMethod) return Installed::nothing;
  swap(row, delegateClass, hostMethod);
  return Installed::swapped;
}

bool isIntercepted(Row row, objc::id delegate) {
  const Class delegateClass = Class::ofObject(delegate);
  const Selector selector(interceptionOf(row).hostSelector);
  const Method method = delegateClass.instanceMethod(selector);
  if (!method) return false;
  return isInterceptor(row, method.implementation()) ||
         installationOn(row, delegateClass.ownerOf(selector)) != nullptr;
}

}  // namespace zib
