#include "Simulator/HTTP/Library.h"

#include <dlfcn.h>

namespace sim {
namespace {

// By its name alone: programs know the folder where they were built, or where they are installed.
const HTTPLibrary& load() {
  void* const library = ::dlopen(ZIB_HTTP_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  void* const table = library == nullptr ? nullptr : ::dlsym(library, "zib_http_library");
  if (table == nullptr) {
    throw HTTPLibraryMissing(std::string("what carries HTTP cannot be loaded: ") + ::dlerror() +
                             "; expected: lib/zibsim/" ZIB_HTTP_LIBRARY " beside bin");
  }
  return *static_cast<const HTTPLibrary*>(table);
}

}  // namespace

const HTTPLibrary& httpLibrary() {
  static const HTTPLibrary& library = load();
  return library;
}

}  // namespace sim
