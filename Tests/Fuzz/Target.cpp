#include "Tests/Fuzz/Target.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "Simulator/Foundation/Foundation.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace fuzz {

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

}  // namespace fuzz

// The fuzzer's own names.
extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
  const zib::AutoreleasePool pool;
  sim::foundation::install();
  fuzz::prepare();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const zib::AutoreleasePool pool;
  fuzz::run({reinterpret_cast<const char*>(bytes), size});
  return 0;
}
