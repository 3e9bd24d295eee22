// How the core library hands its services to the module.

#pragma once

#include <atomic>
#include <memory>

#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"

namespace zib {

// Holds the one instance of a service that the core installs, for the life of the process. Safe
// from any thread.
template <class Service>
class InstalledOnce {
 public:
  // False, and `service` is destroyed, when one is installed already.
  // On its own, so that services whose code is alike share it.
  [[gnu::noinline]] bool install(std::unique_ptr<Service> service) noexcept {
    Service* none = nullptr;
    if (service == nullptr || !installed_.compare_exchange_strong(none, service.get()))
      return false;
    static_cast<void>(service.release());
    return true;
  }

  [[nodiscard]] bool isEmpty() const noexcept { return installed_.load() == nullptr; }

  // The installed service, or the process's own Silent until there is one.
  template <class Silent>
  Service& orElse() const noexcept {
    Service* const installed = installed_.load(std::memory_order_acquire);
    if (installed != nullptr) return *installed;
    static NeverDestroyed<Silent> silent([] { return Silent(); });
    return *silent;
  }

 private:
  std::atomic<Service*> installed_{nullptr};
};

}  // namespace zib
