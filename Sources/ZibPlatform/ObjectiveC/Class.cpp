#include "ZibPlatform/ObjectiveC/Class.h"

#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

objc::SEL KnownSelector::registerNow() noexcept {
  const objc::SEL raw = objc::registerSelector(name);
  registered.store(raw, std::memory_order_relaxed);
  return raw;
}

objc::Class KnownClass::lookUpNow() noexcept {
  const objc::Class raw = objc::lookUpClass(name);
  found.store(raw, std::memory_order_relaxed);
  return raw;
}

bool Class::derivesFrom(Class ancestor) const {
  for (Class cls = *this; cls; cls = cls.superclass()) {
    if (cls == ancestor) return true;
  }
  return false;
}

Class Class::ownerOf(Selector selector) const {
  const Method method = instanceMethod(selector);
  if (!method) return {};
  Class owner = *this;
  for (Class above = superclass(); above && above.instanceMethod(selector) == method;
       above = above.superclass()) {
    owner = above;
  }
  return owner;
}

Class Class::visibleClassOf(objc::id object) {
  const Class actual = ofObject(object);
  if (!isNSObject(object)) return actual;
  const Class claimed(send<objc::Class>(object, selector<"class">()));
  return claimed && actual.derivesFrom(claimed) ? claimed : actual;
}

// On Apple's runtime the class of a class object derives from NSObject too; on GCC's it only
// derives from the class of NSObject's class object.
bool isNSObject(objc::id object) {
  const Class root = classNamed<"NSObject">();
  const Class cls = Class::ofObject(object);
  return cls && (cls.derivesFrom(root) || cls.derivesFrom(Class::ofObject(root.object())));
}

bool isOtherKind(objc::id object, KnownClass& ancestor) {
  const Class cls = Class::ofObject(object);
  const Class wanted = ancestor.find();
  if (!wanted || !isNSObject(object)) return false;
  if (!cls.derivesFrom(wanted)) {
    return send<objc::BOOL>(object, selector<"isKindOfClass:">(), wanted.raw()) != 0;
  }
  ancestor.lastKind.store(cls.raw(), std::memory_order_relaxed);
  return true;
}

bool respondsTo(objc::id object, Selector selector) {
  return send<objc::BOOL>(object, zib::selector<"respondsToSelector:">(), selector.raw()) != 0;
}

}  // namespace zib
