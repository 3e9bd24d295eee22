// The comparison of a case's two sides, and of the start of the process.

#pragma once

#include <functional>

#include "Benchmarks/Allocations.h"
#include "Benchmarks/Cases.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace bench {

// Figures for one call.
struct Sample {
  double nanoseconds = 0;
  double allocations = 0;
  double bytes = 0;
};

// One side, many calls in one pool.
Sample measure(const std::function<void()>& call, int calls);

// How often each side is called before it is measured, and in a batch.
inline constexpr int warmUpCalls = 100;
inline constexpr int batchCalls = 32;

// Calls `configure` in a forked process, of which it is the first.
Sample measureConfigure(const zib::Object& host, void (*configure)());

}  // namespace bench
