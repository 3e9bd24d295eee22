#include "Simulator/ObjectiveC/WeakReference.h"

#include "Simulator/ObjectiveC/Runtime.h"

namespace sim {
namespace {

std::atomic<WeakReference*>& firstReference() {
  static std::atomic<WeakReference*> first{nullptr};
  return first;
}

}  // namespace

// Each root class ends its objects in its own way.
struct Deallocation {
  static inline zib::objc::IMP ofObject = nullptr;
  static inline zib::objc::IMP ofProxy = nullptr;

  static void deallocObject(zib::objc::id self, zib::objc::SEL command) {
    WeakReference::forget(self);
    zib::callImplementation<void>(ofObject, self, zib::Selector(command));
  }
  static void deallocProxy(zib::objc::id self, zib::objc::SEL command) {
    WeakReference::forget(self);
    zib::callImplementation<void>(ofProxy, self, zib::Selector(command));
  }

  static void watch() {
    static const bool isWatching = [] {
      ofObject = installMethod(zib::classNamed<"NSObject">(), "dealloc", &deallocObject);
      ofProxy = installMethod(zib::classNamed<"NSProxy">(), "dealloc", &deallocProxy);
      return true;
    }();
    static_cast<void>(isWatching);
  }
};

WeakReference::WeakReference() {
  Deallocation::watch();
  next_ = firstReference().load();
  while (!firstReference().compare_exchange_weak(next_, this)) {
  }
}

void WeakReference::forget(zib::objc::id object) {
  for (WeakReference* each = firstReference(); each != nullptr; each = each->next_) {
    zib::objc::id expected = object;
    each->object_.compare_exchange_strong(expected, nullptr);
  }
}

}  // namespace sim
