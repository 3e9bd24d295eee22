// How the core library hands its services to the module.

#pragma once

#include <atomic>
#include <memory>

namespace zib {

// Holds the one instance of a service that the core installs, for the life of the process. Safe
// from any thread.
template <class Service>
class InstalledOnce {
 public:
  // False, and `service` is destroyed, when one is installed already.
  bool install(std::unique_ptr<Service> service) noexcept {
    Service* none = nullptr;
    if (service == nullptr || !installed_.compare_exchange_strong(none, service.get()))
      return false;
    static_cast<void>(service.release());
    return true;
  }

  [[nodiscard]] bool isEmpty() const noexcept { return installed_.load() == nullptr; }

  // The installed service, or `silent` until there is one.
  Service& orElse(Service& silent) const noexcept {
    Service* const installed = installed_.load(std::memory_order_acquire);
    return installed == nullptr ? silent : *installed;
  }

 private:
  std::atomic<Service*> installed_{nullptr};
};

}  // namespace zib
