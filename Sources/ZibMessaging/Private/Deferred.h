// Work of the module's that runs later, on the main thread.

#pragma once

#include <memory>
#include <utility>

#include "ZibMessaging/Private/Containment.h"
#include "ZibPlatform/Dispatch/MainQueue.h"

namespace zib {

// In a later turn of the main queue. `operation` lives as long as the process.
template <class Work>
void containedOnMain(const char* operation, Work&& work) {
  mainQueue::async([operation, work = std::forward<Work>(work)] { contained(operation, work); });
}

// At the earliest `seconds` from now, with the owner, if it still exists then.
template <class Owner, class Work>
void afterWeakly(double seconds, const std::weak_ptr<Owner>& owner, const char* operation,
                 Work&& work) {
  mainQueue::after(seconds, [owner = owner, operation, work = std::forward<Work>(work)] {
    contained(operation, [&] {
      if (const auto alive = owner.lock()) work(*alive);
    });
  });
}

}  // namespace zib
