// References that go when their objects do, as the platform's weak ones: GCC's runtime has none.

#pragma once

#include <atomic>

#include "ZibPlatform/ObjectiveC/Native.h"

namespace sim {

// Lives as long as the process. Any thread; but an object must not be let go while another thread
// takes it from here, since nothing retains it on the way.
class WeakReference {
 public:
  WeakReference();
  WeakReference(const WeakReference&) = delete;
  WeakReference& operator=(const WeakReference&) = delete;

  void set(zib::objc::id object) noexcept { object_ = object; }
  [[nodiscard]] zib::objc::id get() const noexcept { return object_; }

 private:
  static void forget(zib::objc::id object);
  friend struct Deallocation;

  std::atomic<zib::objc::id> object_{nullptr};
  WeakReference* next_ = nullptr;
};

}  // namespace sim
