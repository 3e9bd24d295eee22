// libdispatch's C entry points, as far as a main queue goes, over virtual time.

#include <cstdint>
#include <limits>
#include <type_traits>

#include "Simulator/Dispatch/Scheduler.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Native.h"

// The module and hosts only ever take its address.
struct dispatch_queue_s {
  char unused;
};

namespace {

// Does not compile for two types, but that the module's may promise not to throw.
template <class Result, class... Arguments, bool ours>
consteval bool isDeclaredAs(Result (* /*simulated*/)(Arguments...),
                            Result (* /*ours*/)(Arguments...) noexcept(ours)) {
  return true;
}

constexpr std::uint64_t forever = std::numeric_limits<std::uint64_t>::max();

sim::Work call(void* context, void (*work)(void*)) {
  return [context, work] { work(context); };
}

sim::Work call(zib::BlockLayout* block) {
  return [kept = zib::Block<void()>::copied(block)] { kept(); };
}

// A dispatch time is one more than the virtual nanoseconds that it stands for: 0 means "now" there.
void submitAt(std::uint64_t when, sim::Work work) {
  if (when == forever) return;
  sim::Scheduler& scheduler = sim::Scheduler::shared();
  const auto due = when == 0 ? scheduler.now() : static_cast<sim::Nanoseconds>(when - 1);
  scheduler.submit(std::move(work), due);
}

}  // namespace

extern "C" {

dispatch_queue_s _dispatch_main_q{};

std::uint64_t dispatch_time(std::uint64_t when, std::int64_t nanoseconds) {
  if (when == forever) return forever;
  const auto base =
      when == 0 ? sim::Scheduler::shared().now() : static_cast<sim::Nanoseconds>(when - 1);
  return static_cast<std::uint64_t>(std::max<sim::Nanoseconds>(base + nanoseconds, 0)) + 1;
}

void dispatch_async_f(dispatch_queue_s* /*queue*/, void* context, void (*work)(void*)) {
  sim::Scheduler::shared().submitNow(call(context, work));
}

void dispatch_sync_f(dispatch_queue_s* /*queue*/, void* context, void (*work)(void*)) {
  sim::Scheduler::shared().submitAndWait(call(context, work));
}

void dispatch_after_f(std::uint64_t when, dispatch_queue_s* /*queue*/, void* context,
                      void (*work)(void*)) {
  submitAt(when, call(context, work));
}

// The module binds its own declarations to these symbols by name alone.
static_assert(isDeclaredAs(&dispatch_time, &zib::objc::dispatchTime));
static_assert(isDeclaredAs(&dispatch_async_f, &zib::objc::dispatchAsync));
static_assert(isDeclaredAs(&dispatch_sync_f, &zib::objc::dispatchSync));
static_assert(isDeclaredAs(&dispatch_after_f, &zib::objc::dispatchAfter));
static_assert(std::is_same_v<decltype(_dispatch_main_q), decltype(zib::objc::mainDispatchQueue)>);

// The same with blocks, for hosts that are compiled from Objective-C.

void dispatch_async(dispatch_queue_s* /*queue*/, zib::BlockLayout* block) {
  sim::Scheduler::shared().submitNow(call(block));
}

void dispatch_sync(dispatch_queue_s* /*queue*/, zib::BlockLayout* block) {
  sim::Scheduler::shared().submitAndWait(call(block));
}

void dispatch_after(std::uint64_t when, dispatch_queue_s* /*queue*/, zib::BlockLayout* block) {
  submitAt(when, call(block));
}

}  // extern "C"
