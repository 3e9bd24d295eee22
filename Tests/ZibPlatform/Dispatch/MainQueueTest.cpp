#include "ZibPlatform/Dispatch/MainQueue.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Simulator/Dispatch/Scheduler.h"
#include "Simulator/Foundation/Foundation.h"

namespace {

constexpr sim::Nanoseconds second = 1'000'000'000;

class MainQueueTest : public testing::Test {
 protected:
  MainQueueTest() { sim::foundation::install(); }
  static sim::Scheduler& scheduler() { return sim::Scheduler::shared(); }
  void add(std::string what) { order_.push_back(std::move(what)); }
  std::vector<std::string> order_;
};

TEST_F(MainQueueTest, AsyncRunsLaterAndInOrder) {
  zib::mainQueue::async([this] {
    add("first");
    zib::mainQueue::async([this] { add("third"); });
  });
  zib::mainQueue::async([this] { add("second"); });
  EXPECT_TRUE(order_.empty());
  scheduler().drain();
  EXPECT_EQ(order_, (std::vector<std::string>{"first", "second", "third"}));
}

TEST_F(MainQueueTest, AfterRunsAtItsTimeAndNotBefore) {
  std::vector<sim::Nanoseconds> times;
  zib::mainQueue::after(1.0, [&] { times.push_back(scheduler().now()); });
  zib::mainQueue::after(0.5, [&] { times.push_back(scheduler().now()); });
  scheduler().drain();
  EXPECT_TRUE(times.empty());
  scheduler().advanceTo(second - 1);
  EXPECT_EQ(times, (std::vector<sim::Nanoseconds>{second / 2}));
  scheduler().advanceTo(2 * second);
  EXPECT_EQ(times, (std::vector<sim::Nanoseconds>{second / 2, second}));
}

TEST_F(MainQueueTest, SyncRunsOnTheMainThreadBeforeItReturns) {
  const auto mainThread = std::this_thread::get_id();
  scheduler().runOn("worker", [&] {
    EXPECT_FALSE(zib::isMainThread());
    auto work = [&] {
      EXPECT_TRUE(zib::isMainThread());
      EXPECT_EQ(std::this_thread::get_id(), mainThread);
      add("work");
    };
    zib::mainQueue::sync(work);
    add("after");
  });
  EXPECT_EQ(order_, (std::vector<std::string>{"work", "after"}));
}

TEST_F(MainQueueTest, WorkIsDestroyedOnceItHasRun) {
  auto held = std::make_shared<int>(0);
  zib::mainQueue::async([held = std::make_unique<std::shared_ptr<int>>(held)] {});
  EXPECT_EQ(held.use_count(), 2);
  scheduler().drain();
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(MainQueueTest, TheMainThreadKnowsItself) { EXPECT_TRUE(zib::isMainThread()); }

TEST_F(MainQueueTest, AThreadOfTheHostsOwnIsNotTheMainThread) {
  bool isMain = true;
  std::thread([&] { isMain = zib::isMainThread(); }).join();
  EXPECT_FALSE(isMain);
}

}  // namespace
