#include "ZibPlatform/Foundation/Elements.h"

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

objc::id Elements::next() {
  if (!isArray_) return send<objc::id>(source_, selector<"nextObject">());
  if (index_ == count_) return nullptr;
  return send<objc::id>(source_, selector<"objectAtIndex:">(), index_++);
}

Elements elements(objc::id collection) {
  if (isKind<"NSArray">(collection)) {
    return {collection, send<objc::UInteger>(collection, selector<"count">())};
  }
  return Elements(send<objc::id>(collection, selector<"objectEnumerator">()));
}

Elements keysOf(objc::id dictionary) {
  return Elements(send<objc::id>(dictionary, selector<"keyEnumerator">()));
}

}  // namespace zib
