#include "ZibPlatform/ObjectiveC/Block.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>

#include "ZibPlatform/ObjectiveC/Native.h"

namespace {

using zib::Block;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::UInteger;

// Counts how often one captured state dies; what a move leaves behind is no state.
class Captured {
 public:
  explicit Captured(int& deaths) : deaths_(&deaths) {}
  Captured(Captured&& other) noexcept : deaths_(std::exchange(other.deaths_, nullptr)) {}
  Captured(const Captured&) = delete;
  Captured& operator=(const Captured&) = delete;
  Captured& operator=(Captured&&) = delete;
  ~Captured() {
    if (deaths_ != nullptr) ++*deaths_;
  }

 private:
  int* deaths_;
};

TEST(BlockTest, ArgumentsAndResultArriveWhole) {
  const auto block = Block<double(int, double, const char*)>::from(
      [](int number, double factor, const char* text) {
        return number * factor + static_cast<double>(std::string(text).size());
      });
  EXPECT_EQ(block(2, 1.5, "four"), 7.0);
  EXPECT_EQ((Block<double(int, double, const char*)>::call(block.raw(), 1, 1.0, "")), 1.0);
}

TEST(BlockTest, AMissingBlockIsNotCalled) {
  EXPECT_EQ(Block<int(int)>::call(nullptr, 5), 0);
  Block<void()>::call(nullptr);
  const auto none = Block<void(UInteger)>::copied(nullptr);
  EXPECT_FALSE(none);
  EXPECT_EQ(none.raw(), nullptr);
  none(5);
  const auto copy = none;
  EXPECT_FALSE(copy);
}

TEST(BlockTest, CapturedStateDiesExactlyOnce) {
  int deaths = 0;
  {
    auto block = Block<void()>::from([captured = Captured(deaths)] {});
    EXPECT_EQ(deaths, 0);
    const auto copy = block;
    EXPECT_EQ(copy.raw(), block.raw());
    auto moved = std::move(block);
    EXPECT_FALSE(block);  // NOLINT(bugprone-use-after-move): what a move leaves is promised
    moved();
    EXPECT_EQ(deaths, 0);
    block = std::move(moved);
    const auto lent = Block<void()>::copied(copy.raw());
    EXPECT_EQ(deaths, 0);
  }
  EXPECT_EQ(deaths, 1);
}

TEST(BlockTest, CallablesNeedOnlyBeMovable) {
  const auto block =
      Block<int()>::from([number = std::make_unique<int>(5)] { return (*number)++; });
  EXPECT_EQ(block(), 5);
  EXPECT_EQ(block(), 6);
}

TEST(BlockTest, ACaptureOfAnySizeArrives) {
  std::array<char, 4096> large{};
  large.back() = 'z';
  const auto block = Block<int()>::from([large] { return int{large.back()}; });
  EXPECT_EQ(block(), 'z');
}

// Compilers' own code reads these when a block is handed to it.
TEST(BlockTest, TheLayoutIsTheOneThatCompilersPublish) {
  constexpr int hasCopyDispose = 1 << 25;
  constexpr int hasSignature = 1 << 30;
  const auto block = Block<void(BOOL, id)>::from([](BOOL, id) {});
  const zib::BlockLayout* const raw = block.raw();
  EXPECT_EQ(raw->flags & (hasCopyDispose | hasSignature), hasCopyDispose | hasSignature);
  EXPECT_STREQ(raw->descriptor->signature, "v20@?0C8@12");
  EXPECT_EQ(raw->descriptor->reserved, 0U);
  EXPECT_GE(raw->descriptor->size, sizeof(zib::BlockLayout));
  EXPECT_NE(raw->descriptor->copy, nullptr);
  EXPECT_NE(raw->descriptor->dispose, nullptr);
  static_assert(sizeof(zib::BlockLayout) == 32);
  static_assert(offsetof(zib::BlockLayout, invoke) == 16);
  static_assert(offsetof(zib::BlockDescriptor, copy) == 16);
  static_assert(offsetof(zib::BlockDescriptor, signature) == 32);
}

}  // namespace
