// Making a class at run time from C++ functions. The type encoding of each method follows from the
// function's own type, so the two cannot disagree.
//
// Not for changing classes that exist: that is what Class and Method are for.

#pragma once

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Selector.h"
#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

namespace zib {

// Between construction and registerClass() the class is not known to the runtime by name. Any
// thread: the runtime locks its tables.
class ClassBuilder {
 public:
  // `name` must be free; the builder is empty, and registerClass() gives none, when it is not.
  ClassBuilder(const char* name, Class superclass)
      : cls_(objc::allocateClassPair(superclass.raw(), name, 0)) {}

  template <class Result, class... Arguments>
  ClassBuilder& method(const char* name, Result (*function)(objc::id, objc::SEL, Arguments...)) {
    add(cls_, name, function);
    return *this;
  }

  // Class methods are instance methods of the class object's own class.
  template <class Result, class... Arguments>
  ClassBuilder& classMethod(const char* name,
                            Result (*function)(objc::id, objc::SEL, Arguments...)) {
    add(Class::ofObject(cls_.object()), name, function);
    return *this;
  }

  // Declares that the class adopts the protocol, where a loaded framework has one of that name.
  ClassBuilder& adopting(const char* protocol) {
    objc_object* const found = objc::protocolNamed(protocol);
    if (cls_ && found != nullptr) objc::addProtocol(cls_.raw(), found);
    return *this;
  }

  Class registerClass() {
    if (cls_) objc::registerClassPair(cls_.raw());
    return cls_;
  }

 private:
  template <class Result, class... Arguments>
  static void add(Class cls, const char* name,
                  Result (*function)(objc::id, objc::SEL, Arguments...)) {
    using Signature = Result(objc::id, objc::SEL, Arguments...);
    add(cls, name, objc::functionCast<objc::IMP>(function),
        encoding::Method<Signature>::value.data());
  }
  static void add(Class cls, const char* name, objc::IMP function, const char* types) {
    if (cls) cls.addMethod(Selector(name), function, types);
  }

  Class cls_;
};

}  // namespace zib
