// The simulated process's threads and its time.
//
// Exactly one thread runs at any moment, so that a run is the same each time: the main thread hands
// over to another one and waits until that one has finished or waits for the main queue. Time is
// virtual and moves only in advanceTo() and when nothing is left to do but to wait for something
// slow.

#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

namespace sim {

using Work = std::function<void()>;
using Nanoseconds = std::int64_t;

// To the nearest nanosecond.
Nanoseconds inNanoseconds(double seconds);
double inSeconds(Nanoseconds time);

inline constexpr std::string_view mainThreadName = "main";
// The name under which the timeline shows the calling thread: the one that it was given here;
// "main" for the process's first thread, "unknown" for any other.
std::string_view currentThreadName();

class Scheduler {
 public:
  static Scheduler& shared();

  // Since the start, as all times here.
  [[nodiscard]] Nanoseconds now() const;

  // Work of the main queue, in order of its due time, and of submission where that is the same.
  // Any thread.
  void submit(Work work, Nanoseconds due);
  void submitNow(Work work);
  // Returns when the main thread has run the work. On the main thread this would never be, so there
  // it ends the process with a message, as the platform does.
  void submitAndWait(Work work);

  // Work for another thread, begun when the main thread is done with what it does now and before
  // the main queue goes on.
  void submitElsewhere(std::string threadName, Work work);

  // The end of something slow, such as an exchange with a server, on another thread. It comes after
  // all that the main queue has to do until then, as a server takes longer than what is due at
  // once. Where several end at one time, they do so in the order of submission. The result is for
  // withdraw().
  std::uint64_t submitSlow(std::string threadName, Work work, Nanoseconds due);
  // What has begun already is not stopped.
  void withdraw(std::uint64_t slow);

  // Main thread only, all of these.
  // Runs work on a thread of that name to its end; meanwhile the main queue serves those who wait
  // for it. The name "main" is the main thread itself.
  void runOn(const std::string& threadName, const Work& work);
  // Runs all that is due until nothing is left, and waits for what is slow: time jumps to its end,
  // past what falls due meanwhile, each at its own time.
  void drain();
  // Lets time pass while the main thread does something else: what falls due runs later.
  void passWithoutWork(double seconds);
  // Lets time pass; what falls due runs at its own time.
  void advanceTo(Nanoseconds time);

 private:
  struct Item {
    Nanoseconds due;
    std::uint64_t number;
    mutable Work work;
    friend bool operator<(const Item& one, const Item& other) {
      return one.due != other.due ? one.due < other.due : one.number < other.number;
    }
  };
  struct Elsewhere {
    std::string threadName;
    Work work;
  };
  struct Slow {
    Nanoseconds due;
    std::uint64_t number;
    mutable Elsewhere elsewhere;
    friend bool operator<(const Slow& one, const Slow& other) {
      return one.due != other.due ? one.due < other.due : one.number < other.number;
    }
  };

  bool runNextDue(Nanoseconds limit);
  bool runNextElsewhere();
  bool runNextSlow();

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::set<Item> items_;
  std::deque<Elsewhere> elsewhere_;
  std::set<Slow> slow_;
  Nanoseconds now_ = 0;
  std::uint64_t nextNumber_ = 0;
  int waiting_ = 0;
};

}  // namespace sim
