// Replacing a method's implementation for every class that inherits it, as the platform's runtime
// does.
//
// GCC's runtime renews the dispatch table of the class that owns the method, and no other. Those of
// its subclasses share its memory only in part: where one has methods of its own nearby, as the
// hidden class of an observed object has, it keeps the function from before. So this takes the
// place of the runtime's function, in the whole process, and renews the subclasses' tables too.

#include <dlfcn.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "Simulator/ObjectiveC/Runtime.h"

// As compilers emit it.
struct objc_method {
  zib::objc::SEL selector;
  const char* types;
  zib::objc::IMP function;
};

extern "C" {

int objc_getClassList(objc_class** classes, int count);
// The runtime's own; it does the subclasses too.
void __objc_update_dispatch_table_for_class(
    objc_class* cls);  // NOLINT(bugprone-reserved-identifier)

}  // extern "C"

namespace sim {
namespace {

using zib::Class;

std::vector<Class> allClasses() {
  std::vector<objc_class*> raw(static_cast<std::size_t>(objc_getClassList(nullptr, 0)));
  objc_getClassList(raw.data(), static_cast<int>(raw.size()));
  return {raw.begin(), raw.end()};
}

// By the list, since asking the class for a method would start up classes that nobody uses.
bool hasOfItsOwn(Class cls, const objc_method* method) {
  struct Free {
    void operator()(objc_method** methods) const { std::free(methods); }
  };
  unsigned int count = 0;
  const std::unique_ptr<objc_method*[], Free> methods(class_copyMethodList(cls.raw(), &count));
  for (unsigned int index = 0; index < count; ++index) {
    if (methods[index] == method) return true;
  }
  return false;
}

void renewDispatchTables(const objc_method* method) {
  for (const Class cls : allClasses()) {
    for (const Class owner : {cls, metaclassOf(cls)}) {
      if (!hasOfItsOwn(owner, method)) continue;
      __objc_update_dispatch_table_for_class(owner.raw());
      return;
    }
  }
}

}  // namespace
}  // namespace sim

void sim::setImplementation(zib::Class owner, zib::Selector selector, zib::objc::IMP function) {
  zib::objc::instanceMethod(owner.raw(), selector.raw())->function = function;
  __objc_update_dispatch_table_for_class(owner.raw());
}

// Weak, since a program that measures wants the runtime's.
extern "C" __attribute__((weak)) zib::objc::IMP method_setImplementation(objc_method* method,
                                                                         zib::objc::IMP function) {
  using Replace = zib::objc::IMP(objc_method*, zib::objc::IMP);
  static auto* const replace =
      reinterpret_cast<Replace*>(::dlsym(RTLD_NEXT, "method_setImplementation"));
  const zib::objc::IMP before = replace(method, function);
  sim::renewDispatchTables(method);
  return before;
}

extern "C" void method_exchangeImplementations(objc_method* one, objc_method* other) {
  using Exchange = void(objc_method*, objc_method*);
  static auto* const exchange =
      reinterpret_cast<Exchange*>(::dlsym(RTLD_NEXT, "method_exchangeImplementations"));
  exchange(one, other);
  for (const objc_method* method : {one, other}) sim::renewDispatchTables(method);
}
