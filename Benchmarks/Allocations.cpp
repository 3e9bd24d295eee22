#include "Benchmarks/Allocations.h"

#include <cstddef>

// What glibc offers to those who stand in front of its malloc. free() needs nobody in front.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): glibc's names.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

constinit thread_local bench::Allocations total;

void add(std::size_t size) noexcept {
  ++total.count;
  total.bytes += size;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) noexcept {
  add(size);
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
  add(count * size);
  return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) noexcept {
  add(size);
  return __libc_realloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  add(size);
  return __libc_memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
  add(size);
  *memory = __libc_memalign(alignment, size);
  constexpr int outOfMemory = 12;
  return *memory == nullptr ? outOfMemory : 0;
}

}  // extern "C"

namespace bench {

Allocations allocationsSoFar() noexcept { return total; }

}  // namespace bench
