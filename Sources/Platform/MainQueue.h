// The main dispatch queue and the main thread.

#pragma once

#include <memory>
#include <utility>

#include "Platform/Native.h"

namespace zib {

bool isMainThread();

namespace mainQueue {

template <class Work>
void runOwned(void* context) {
  const std::unique_ptr<Work> work(static_cast<Work*>(context));
  (*work)();
}

template <class Work>
void runBorrowed(void* context) {
  (*static_cast<Work*>(context))();
}

// The work must not throw: it runs on frames of dispatch.
template <class Work>
void async(Work work) {
  dispatch_async_f(&_dispatch_main_q, std::make_unique<Work>(std::move(work)).release(),
                   &runOwned<Work>);
}

// At the earliest `seconds` from now.
template <class Work>
void after(double seconds, Work work) {
  constexpr double nanosecondsPerSecond = 1e9;
  const std::uint64_t due =
      dispatch_time(0, static_cast<std::int64_t>(seconds * nanosecondsPerSecond));
  dispatch_after_f(due, &_dispatch_main_q, std::make_unique<Work>(std::move(work)).release(),
                   &runOwned<Work>);
}

// Returns when the work has run. Never call it on the main thread: the queue would wait for itself.
template <class Work>
void sync(Work& work) {
  dispatch_sync_f(&_dispatch_main_q, &work, &runBorrowed<Work>);
}

}  // namespace mainQueue
}  // namespace zib
