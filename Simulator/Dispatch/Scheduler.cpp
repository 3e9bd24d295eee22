#include "Simulator/Dispatch/Scheduler.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"

namespace sim {
namespace {

constexpr double nanosecondsPerSecond = 1e9;

std::string& threadName() {
  static thread_local std::string name(::gettid() == ::getpid() ? mainThreadName : "unknown");
  return name;
}

// Each piece of work gets a pool, as dispatch and threads of the platform give.
void runPooled(const Work& work) {
  const zib::AutoreleasePool pool;
  work();
}

}  // namespace

Nanoseconds inNanoseconds(double seconds) { return std::llround(seconds * nanosecondsPerSecond); }

double inSeconds(Nanoseconds time) { return static_cast<double>(time) / nanosecondsPerSecond; }

std::string_view currentThreadName() { return threadName(); }

// Never destroyed: work that waits when the process ends stays the queue's.
Scheduler& Scheduler::shared() {
  static zib::NeverDestroyed<Scheduler> scheduler([] { return Scheduler(); });
  return *scheduler;
}

Nanoseconds Scheduler::now() const {
  const std::lock_guard lock(mutex_);
  return now_;
}

void Scheduler::submit(Work work, Nanoseconds due) {
  const std::lock_guard lock(mutex_);
  items_.insert({due, nextNumber_++, std::move(work)});
}

void Scheduler::submitNow(Work work) {
  const std::lock_guard lock(mutex_);
  items_.insert({now_, nextNumber_++, std::move(work)});
}

void Scheduler::submitAndWait(Work work) {
  if (threadName() == mainThreadName) {
    std::fputs("zibsim: dispatch_sync was called on the main queue by the main thread\n", stderr);
    std::abort();
  }
  bool isDone = false;
  std::unique_lock lock(mutex_);
  items_.insert({now_, nextNumber_++, [&] {
                   work();
                   const std::lock_guard doneLock(mutex_);
                   isDone = true;
                   --waiting_;
                   changed_.notify_all();
                 }});
  ++waiting_;
  changed_.notify_all();
  changed_.wait(lock, [&] { return isDone; });
}

void Scheduler::submitElsewhere(std::string name, Work work) {
  const std::lock_guard lock(mutex_);
  elsewhere_.push_back({std::move(name), std::move(work)});
}

std::uint64_t Scheduler::submitSlow(std::string name, Work work, Nanoseconds due) {
  const std::lock_guard lock(mutex_);
  slow_.insert({due, nextNumber_, {std::move(name), std::move(work)}});
  return nextNumber_++;
}

void Scheduler::withdraw(std::uint64_t slow) {
  const std::lock_guard lock(mutex_);
  std::erase_if(slow_, [slow](const Slow& other) { return other.number == slow; });
}

void Scheduler::runOn(const std::string& name, const Work& work) {
  if (name == mainThreadName) {
    runPooled(work);
    return;
  }
  bool isDone = false;
  std::thread thread([&] {
    threadName() = name;
    runPooled(work);
    const std::lock_guard lock(mutex_);
    isDone = true;
    changed_.notify_all();
  });
  std::unique_lock lock(mutex_);
  while (!isDone) {
    changed_.wait(lock, [&] { return isDone || waiting_ > 0; });
    while (waiting_ > 0) {
      const Nanoseconds limit = now_;
      lock.unlock();
      runNextDue(limit);
      lock.lock();
    }
  }
  lock.unlock();
  thread.join();
}

void Scheduler::drain() {
  while (runNextElsewhere() || runNextDue(now()) || runNextSlow()) {
  }
}

void Scheduler::passWithoutWork(double seconds) {
  const std::lock_guard lock(mutex_);
  now_ += inNanoseconds(seconds);
}

void Scheduler::advanceTo(Nanoseconds time) {
  drain();
  while (runNextDue(time)) drain();
  const std::lock_guard lock(mutex_);
  now_ = std::max(now_, time);
}

bool Scheduler::runNextDue(Nanoseconds limit) {
  Work work;
  {
    const std::lock_guard lock(mutex_);
    if (items_.empty() || items_.begin()->due > limit) return false;
    now_ = std::max(now_, items_.begin()->due);
    work = std::move(items_.begin()->work);
    items_.erase(items_.begin());
  }
  runPooled(work);
  return true;
}

bool Scheduler::runNextElsewhere() {
  Elsewhere next;
  {
    const std::lock_guard lock(mutex_);
    if (elsewhere_.empty()) return false;
    next = std::move(elsewhere_.front());
    elsewhere_.pop_front();
  }
  runOn(next.threadName, next.work);
  return true;
}

// Or, if the main queue has something to do before that, the first of it.
bool Scheduler::runNextSlow() {
  Nanoseconds due = 0;
  {
    const std::lock_guard lock(mutex_);
    if (slow_.empty()) return false;
    due = slow_.begin()->due;
  }
  if (runNextDue(due)) return true;
  Elsewhere next;
  {
    const std::lock_guard lock(mutex_);
    now_ = std::max(now_, due);
    next = std::move(slow_.begin()->elsewhere);
    slow_.erase(slow_.begin());
  }
  runOn(next.threadName, next.work);
  return true;
}

}  // namespace sim
