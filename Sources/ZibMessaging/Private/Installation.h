// What the module has put on the host's classes, and what was there before: the one place that
// knows.
//
// Written on the main thread only; the interceptors read on whatever thread the system calls them,
// without a lock. Nothing is ever taken out again, neither of a class nor of this list.

#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "ZibMessaging/Private/Interception.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Selector.h"

namespace zib {

// How a row came to a class.
enum class Installed : std::uint8_t {
  nothing,
  // The host's method was replaced, and is called after the module's own handling.
  swapped,
  // There was none, so there is nothing to call, unless the host names a target by now.
  added,
  // There was none, but the host answers the message by forwarding it, and still gets it so.
  forwarding,
};

// One interceptor function on one class. Each function is on one class only, so a call knows by the
// function alone whose method it replaced.
class Installation {
 public:
  // Before the function can be called. `before` is what a swapped method did, or what
  // forwards.
  void record(Installed how, Class on, Selector method, objc::IMP before) noexcept {
    owner_.store(on.raw(), std::memory_order_relaxed);
    selector_.store(method.raw(), std::memory_order_relaxed);
    original_.store(before, std::memory_order_relaxed);
    kind_.store(how, std::memory_order_release);
  }

  [[nodiscard]] Installed kind() const noexcept { return kind_.load(std::memory_order_acquire); }
  // After kind() has said that there is something. The class whose own method the function is.
  [[nodiscard]] Class owner() const noexcept {
    return Class(owner_.load(std::memory_order_relaxed));
  }
  [[nodiscard]] Selector selector() const noexcept {
    return Selector(selector_.load(std::memory_order_relaxed));
  }
  [[nodiscard]] objc::IMP original() const noexcept {
    return original_.load(std::memory_order_relaxed);
  }
  // Of those that share the last function, the one that was made after this, or null.
  [[nodiscard]] const Installation* next() const noexcept {
    return next_.load(std::memory_order_acquire);
  }
  void setNext(const Installation* more) noexcept { next_.store(more, std::memory_order_release); }

 private:
  std::atomic<objc::Class> owner_{nullptr};
  std::atomic<objc::SEL> selector_{nullptr};
  std::atomic<objc::IMP> original_{nullptr};
  std::atomic<const Installation*> next_{nullptr};
  std::atomic<Installed> kind_{Installed::nothing};
};

// How many interceptor functions a row has. Hosts have one class for most rows, and one for each
// kind of scene.
inline constexpr std::size_t functionsOfARow = 8;

// Those of the functions.
extern constinit std::array<std::array<Installation, functionsOfARow>, rowCount> installations;

// That of a function, which its number tells.
inline const Installation& installationAt(Row row, std::size_t number) noexcept {
  return installations[static_cast<std::size_t>(row)][number];
}
// Of those that share the last function, once all are in use: that of the class or of the nearest
// superclass, or null.
const Installation* sharedInstallation(Row row, Class from) noexcept;

// The class's own method for the row, or null: the latest, where there are several.
const Installation* installationOn(Row row, Class owner) noexcept;
// The method that was saved last; nil while none has been replaced.
objc::IMP latestOriginal(Row row) noexcept;

// Where the next installation goes, and the number of its function.
struct FreeInstallation {
  Installation* place = nullptr;
  std::size_t number = 0;
};
// Main thread. None when all functions are in use and the class has one of them.
FreeInstallation nextInstallation(Row row, Class owner);

}  // namespace zib
