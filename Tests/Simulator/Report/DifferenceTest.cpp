// Timelines compared line by line.

#include "Simulator/Report/Difference.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using sim::ComparedLine;
using sim::Side;
using Lines = std::vector<std::string>;

Lines linesOf(Side side, const std::vector<ComparedLine>& compared) {
  Lines lines;
  for (const ComparedLine& line : compared) {
    if (line.side == Side::both || line.side == side) lines.push_back(line.text);
  }
  return lines;
}

std::size_t differing(const std::vector<ComparedLine>& compared) {
  std::size_t count = 0;
  for (const ComparedLine& line : compared) count += line.side == Side::both ? 0 : 1;
  return count;
}

TEST(Difference, HasAsFewLinesOnOneSideAsPossible) {
  EXPECT_EQ(differing(sim::compare({"a", "b", "c"}, {"a", "b", "c"})), 0U);
  EXPECT_EQ(differing(sim::compare({"a", "b", "c"}, {"a", "c"})), 1U);
  EXPECT_EQ(differing(sim::compare({"a", "b", "c", "d"}, {"b", "x", "d"})), 3U);
  EXPECT_EQ(differing(sim::compare({}, {"a"})), 1U);
  EXPECT_EQ(differing(sim::compare({}, {})), 0U);
}

TEST(Difference, HoldsBothTimelinesWhole) {
  std::mt19937 random(7);  // NOLINT(cert-msc51-cpp,cert-msc32-c): the same each time
  for (int round = 0; round < 200; ++round) {
    const auto some = [&] {
      Lines lines(random() % 12);
      for (std::string& line : lines) line = std::string(1, static_cast<char>('a' + random() % 3));
      return lines;
    };
    const Lines first = some();
    const Lines second = some();
    const auto compared = sim::compare(first, second);
    EXPECT_EQ(linesOf(Side::first, compared), first);
    EXPECT_EQ(linesOf(Side::second, compared), second);
  }
}

TEST(Difference, BearsLongTimelinesThatHaveNothingInCommon) {
  EXPECT_EQ(differing(sim::compare(Lines(20'000, "a"), Lines(20'000, "b"))), 40'000U);
}

TEST(Difference, LeavesOutWhatIsNoEffect) {
  EXPECT_EQ(sim::meaningOf({{"kind", "log"}, {"t", 0}, {"thread", "main"}}), "");
  EXPECT_EQ(sim::meaningOf({{"kind", "step"}, {"t", 0}, {"thread", "main"}}), "");
  EXPECT_EQ(sim::meaningOf({{"kind", "core"}, {"t", 1}, {"thread", "session"}, {"token", "x"}}),
            "core thread=\"session\" token=\"x\"");
}

}  // namespace
