// The main dispatch queue and the main thread.

#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "ZibPlatform/ObjectiveC/Native.h"

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
void async(Work&& work) {
  using Owned = std::decay_t<Work>;
  objc::dispatchAsync(&objc::mainDispatchQueue,
                      std::make_unique<Owned>(std::forward<Work>(work)).release(),
                      &runOwned<Owned>);
}

// At the earliest `seconds` from now.
template <class Work>
void after(double seconds, Work&& work) {
  using Owned = std::decay_t<Work>;
  constexpr double nanosecondsPerSecond = 1e9;
  const std::uint64_t due =
      objc::dispatchTime(0, static_cast<std::int64_t>(seconds * nanosecondsPerSecond));
  objc::dispatchAfter(due, &objc::mainDispatchQueue,
                      std::make_unique<Owned>(std::forward<Work>(work)).release(),
                      &runOwned<Owned>);
}

// Returns when the work has run. Never call it on the main thread: the queue would wait for itself.
template <class Work>
void sync(Work& work) {
  objc::dispatchSync(&objc::mainDispatchQueue, &work, &runBorrowed<Work>);
}

}  // namespace mainQueue
}  // namespace zib
