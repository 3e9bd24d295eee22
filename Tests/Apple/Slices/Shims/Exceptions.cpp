// The platform's exceptions. There the object runtime throws an object as an exception of C++,
// whose type has the name of the object's class; GCC's throws it as one of another language, which
// C++ catches and knows nothing of.

#include <cxxabi.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <unwind.h>

struct objc_object;
struct objc_class;
extern "C" const char* class_getName(objc_class* cls);

namespace {

// How GCC's object runtime throws, and where the C++ runtime has the unwinder's header from its own
// record of an exception.
struct ThrownObject {
  _Unwind_Exception header;
  objc_class** object;
};
constexpr uint64_t thrownByObjectiveC = 0x474e55434f424a43;  // "GNUCOBJC"
constexpr size_t headerInRecord = 80;

ThrownObject* thrownObject() {
  char* record = nullptr;
  memcpy(static_cast<void*>(&record), abi::__cxa_get_globals(), sizeof record);
  if (record == nullptr) return nullptr;
  auto* const thrown = reinterpret_cast<ThrownObject*>(record + headerInRecord);
  return thrown->header.exception_class == thrownByObjectiveC ? thrown : nullptr;
}

// What the image's std::type_info reads of a type.
struct TypeInformation {
  const void* table;
  const char* name;
};

}  // namespace

// The image's std::exception_ptr.
struct Thrown {
  void* object;
  ~Thrown();
};

extern "C" const void* zib_shim___cxa_current_exception_type() {
  const ThrownObject* const thrown = thrownObject();
  if (thrown == nullptr || thrown->object == nullptr) return abi::__cxa_current_exception_type();
  static __thread TypeInformation type;
  type.name = class_getName(*thrown->object);
  return &type;
}

// Of the platform's exceptions alone: nothing of the image asks for others.
Thrown currentException() __asm__("_ZSt17current_exceptionv");
Thrown currentException() {
  ThrownObject* const thrown = thrownObject();
  return {thrown == nullptr ? nullptr : static_cast<void*>(&thrown->object)};
}

void releaseException(void* pointer) __asm__("_ZNSt13exception_ptrD1Ev");
void releaseException(void*) {}

Thrown::~Thrown() {}
