#include <gtest/gtest.h>

#include <memory>

#include "ZibPlatform/ObjectiveC/Block.h"

namespace {

// Two runtimes bring the functions that copy blocks, and only one of them moves a block off the
// stack: which one is in force depends on the order of linking.
TEST(BlockCopyTest, OutlivesTheFrameThatMadeIt) {
  const auto make = [](int value) {
    return zib::Block<int(int)>::from([value](int added) { return value + added; });
  };
  const auto one = make(1);
  const auto hundred = make(100);
  EXPECT_EQ(one(1), 2);
  EXPECT_EQ(hundred(1), 101);
}

TEST(BlockCopyTest, DestroysWhatItHoldsWithTheLastReference) {
  auto held = std::make_shared<int>(0);
  {
    auto block = zib::Block<void()>::from([held] {});
    const auto copy = block;
    EXPECT_EQ(held.use_count(), 2);
    block = zib::Block<void()>::from([] {});
    EXPECT_EQ(held.use_count(), 2);
  }
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
