// Counts what the calling thread allocates, through malloc itself: the C++ library, the object
// runtime and Foundation all end there.
//
// Linking Allocations.cpp replaces malloc in the whole process.

#pragma once

#include <cstdint>

namespace bench {

struct Allocations {
  std::uint64_t count = 0;
  std::uint64_t bytes = 0;

  friend Allocations operator-(Allocations one, Allocations other) {
    return {one.count - other.count, one.bytes - other.bytes};
  }
};

// All of the thread so far.
Allocations allocationsSoFar() noexcept;

}  // namespace bench
