// The main queue of this host, which has nothing to wait for: work runs where it is handed in.

#include <cstdint>

struct dispatch_queue_s {
  char unused;
};

extern "C" {

dispatch_queue_s _dispatch_main_q{};

std::uint64_t dispatch_time(std::uint64_t when, std::int64_t nanoseconds) {
  return when + static_cast<std::uint64_t>(nanoseconds);
}
void dispatch_async_f(dispatch_queue_s*, void* context, void (*work)(void*)) { work(context); }
void dispatch_sync_f(dispatch_queue_s*, void* context, void (*work)(void*)) { work(context); }
void dispatch_after_f(std::uint64_t, dispatch_queue_s*, void*, void (*)(void*)) {}
void dispatch_async(dispatch_queue_s*, void*) {}
void dispatch_after(std::uint64_t, dispatch_queue_s*, void*) {}
}
