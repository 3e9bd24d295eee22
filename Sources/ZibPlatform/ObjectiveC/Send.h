// Message sending with the exact type of the method, to objects and to classes, and making objects.
//
// A message to nil gives R{}. Not noexcept: an unknown selector, and any method, can throw the
// platform's exception, which unwinds C++ frames.
//
// A build with ZIB_CHECKS_SENDS, as debug builds have, checks each send against the type encoding
// of the method that it reaches: a wrong cast here corrupts the stack on a phone and shows nowhere
// else. A disagreement is said on standard error, with the class, the selector and both types. On
// Linux, where the tests run, it ends the process; on a phone it is said once for each selector,
// since what is odd there can be the host's.

#pragma once

#include <type_traits>

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/FixedString.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Selector.h"
#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

namespace zib {

// Says so unless `types` and the method that `receiver` answers `selector` with agree.
// Methods that the receiver only forwards cannot be checked and pass.
void checkSend(objc::id receiver, Selector selector, const char* types);

// An object that is not initialised yet, and the caller's.
objc::id allocate(Class cls);
// A new object of the class; nil of none.
Object create(Class cls);

// Of each build its own, so that the linker cannot take one for the other.
#if defined(ZIB_CHECKS_SENDS)
inline namespace checked {
inline constexpr bool sendsAreChecked = true;
#else
inline namespace unchecked {
inline constexpr bool sendsAreChecked = false;
#endif

template <class Result, class... Arguments>
Result send(objc::id receiver, Selector selector, Arguments... arguments) {
  static_assert(std::is_void_v<Result> || std::is_scalar_v<Result>,
                "a structure is returned in another way on each architecture");
  if constexpr (sendsAreChecked || !objc::nilGivesZero) {
    if (receiver == nullptr) return Result();
  }
  if constexpr (sendsAreChecked) {
    checkSend(receiver, selector,
              encoding::Method<Result(objc::id, objc::SEL, Arguments...)>::value.data());
  }
  using Function = Result(objc::id, objc::SEL, Arguments...);
  return objc::functionFor<Function>(receiver, selector.raw())(receiver, selector.raw(),
                                                               arguments...);
}

// A message to the class object: `sendToClass<"NSNull", "null">()`. One to a class that is not
// there gives R{}, as one to nil.
template <FixedString ClassName, FixedString SelectorName, class Result = objc::id,
          class... Arguments>
Result sendToClass(Arguments... arguments) {
  return send<Result>(classNamed<ClassName>().object(), selector<SelectorName>(), arguments...);
}

// A new object: `create<"NSData", "initWithBytes:length:">(bytes, length)`. Nil where there is no
// such class, or where the initialiser says so.
template <FixedString ClassName, FixedString Initialiser, class... Arguments>
Object create(Arguments... arguments) {
  return Object::adopted(
      send<objc::id>(allocate(classNamed<ClassName>()), selector<Initialiser>(), arguments...));
}
template <FixedString ClassName>
Object create() {
  return create(classNamed<ClassName>());
}

}  // namespace

// Calls a saved or looked-up implementation as the method that it is. `function` is not nil.
template <class Result, class... Arguments>
Result callImplementation(objc::IMP function, objc::id receiver, Selector selector,
                          Arguments... arguments) {
  using Function = Result(objc::id, objc::SEL, Arguments...);
  return objc::functionCast<Function*>(function)(receiver, selector.raw(), arguments...);
}

}  // namespace zib
