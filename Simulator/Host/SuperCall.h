// How a host's method calls its superclass's: as `[super method:…]` is compiled.

#pragma once

#include "Simulator/Host/HostClasses.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Object.h"

extern "C" {

struct objc_super {
  zib::objc::id self;
  zib::objc::Class superclass;
};
zib::objc::IMP objc_msg_lookup_super(const objc_super* super, zib::objc::SEL selector);

}  // extern "C"

namespace sim {

// What is kept of an argument until a later turn.
inline zib::Object keptArgument(zib::objc::id object) { return zib::Object::retained(object); }
inline zib::Block<void()> keptArgument(zib::BlockLayout* block) {
  return zib::Block<void()>::copied(block);
}

// Another object that is equal, or what is left of a set of URL contexts without its first; what
// cannot be copied, such as the application, stays the same.
zib::Object filteredArgument(zib::objc::id object);
inline zib::Block<void()> filteredArgument(zib::BlockLayout* block) { return keptArgument(block); }

// `cls` is the class that the calling method belongs to.
template <class Result, class... Kept>
void sendToSuper(zib::Class cls, zib::objc::id self, zib::objc::SEL selector, const Kept&... kept) {
  const objc_super super{self, cls.superclass().raw()};
  using Function = Result(zib::objc::id, zib::objc::SEL, decltype(kept.raw())...);
  auto* const function =
      zib::objc::functionCast<Function*>(objc_msg_lookup_super(&super, selector));
  static_cast<void>(function(self, selector, kept.raw()...));
}

}  // namespace sim
