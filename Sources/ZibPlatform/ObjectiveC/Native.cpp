#include "ZibPlatform/ObjectiveC/Native.h"

#include <cxxabi.h>

#include <cstring>

#include "ZibPlatform/ObjectiveC/HandledException.h"

#if defined(__APPLE__)

#include <exception>
#include <typeinfo>

namespace zib::objc {

// Apple's runtime throws its objects as exceptions of C++, whose type information has the name of
// the object's class, unlike that of any C++ type.
id handledException() noexcept {
  const std::type_info* const type = abi::__cxa_current_exception_type();
  const Class exceptionClass = lookUpClass("NSException");
  Class cls = type == nullptr ? nullptr : lookUpClass(type->name());
  while (cls != nullptr && cls != exceptionClass) cls = superclassOf(cls);
  if (cls == nullptr) return nullptr;
  // A pointer to what was thrown.
  const std::exception_ptr handled = std::current_exception();
  static_assert(sizeof(handled) == sizeof(id*));
  id* thrown = nullptr;
  std::memcpy(static_cast<void*>(&thrown), &handled, sizeof(thrown));
  return *thrown;
}

}  // namespace zib::objc

#else

#include <unwind.h>

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Selector.h"

// GCC's runtime has no functions for ownership and pools, so the messages are sent.
namespace zib::objc {
namespace {

// How GCC's object runtime throws: its own class of exceptions, and the object after the header.
struct ThrownObject {
  _Unwind_Exception header;
  id object;
};
constexpr char thrownByObjectiveC[] = {'G', 'N', 'U', 'C', 'O', 'B', 'J', 'C'};

// Where the C++ runtime has the unwinder's header, from its own record of an exception, which it
// makes up for those of other languages.
constexpr std::size_t headerInRecord = 80;

id sendForObject(id receiver, SEL selector) {
  return functionFor<id(id, SEL)>(receiver, selector)(receiver, selector);
}

void sendForNothing(id receiver, SEL selector) {
  functionFor<void(id, SEL)>(receiver, selector)(receiver, selector);
}

}  // namespace

id handledException() noexcept {
  const char* record = nullptr;
  std::memcpy(static_cast<void*>(&record), abi::__cxa_get_globals(), sizeof(record));
  if (record == nullptr) return nullptr;
  const auto* thrown = reinterpret_cast<const ThrownObject*>(record + headerInRecord);
  std::uint64_t kind = 0;
  for (const char letter : thrownByObjectiveC) {
    kind = (kind << 8U) | static_cast<unsigned char>(letter);
  }
  if (thrown->header.exception_class != kind) return nullptr;
  const bool isException =
      zib::Class::ofObject(thrown->object).derivesFrom(classNamed<"NSException">());
  return isException ? thrown->object : nullptr;
}

id retain(id object) {
  return object == nullptr ? nullptr : sendForObject(object, selector<"retain">().raw());
}

void release(id object) {
  if (object != nullptr) sendForNothing(object, selector<"release">().raw());
}

void* pushAutoreleasePool() {
  return sendForObject(classNamed<"NSAutoreleasePool">().object(), selector<"new">().raw());
}

void popAutoreleasePool(void* pool) {
  sendForNothing(static_cast<id>(pool), selector<"drain">().raw());
}

}  // namespace zib::objc

#endif
