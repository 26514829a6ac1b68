#include "foundation/support/ComparableTuple.hpp"
#include "foundation/support/CoreAdditions.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace iconwright {
namespace {

using Pair = ComparableTuple2<int, std::string>;
static_assert(ComparableTuple3<int, int, int>(1, 2, 3) < ComparableTuple3<int, int, int>(1, 3, 0));
static_assert(ComparableTuple5<int, int, int, int, int>(1, 2, 3, 4, 5) == ComparableTuple5<int, int, int, int, int>(1, 2, 3, 4, 5));

TEST(ComparableTuple, FirstDifferingMemberDecides) {
  struct Row {
    const char* label;
    Pair lhs;
    Pair rhs;
    bool less;
    bool equal;
  };
  const Row rows[] = {
      {"first member decides over later ones", Pair(1, "z"), Pair(2, "a"), true, false},
      {"first member greater", Pair(3, "a"), Pair(2, "z"), false, false},
      {"tie goes to second member", Pair(1, "a"), Pair(1, "b"), true, false},
      {"equal", Pair(1, "a"), Pair(1, "a"), false, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(row.lhs < row.rhs, row.less);
    EXPECT_EQ(row.lhs == row.rhs, row.equal);
    EXPECT_EQ(row.lhs >= row.rhs, !row.less);
    EXPECT_EQ(row.rhs > row.lhs, row.less);
  }
}

TEST(ComparableTuple, UnorderedMemberDecidesAsFalse) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  using Doubles = ComparableTuple2<double, double>;
  // The NaN differs from its peer, so the later member is never looked at.
  EXPECT_FALSE(Doubles(nan, 1) < Doubles(nan, 2));
  EXPECT_FALSE(Doubles(1, nan) < Doubles(1, 2));
  EXPECT_FALSE(Doubles(nan, 1) == Doubles(nan, 1));
  EXPECT_TRUE(Doubles(1, 2) < Doubles(1, 3));
}

struct Sample {
  double x = 0;
  std::string name;
};

TEST(CoreAdditions, WithReplacesOneMemberOfACopy) {
  const Sample original{1.5, "a"};
  const Sample changed = with(original, &Sample::name, "b");
  EXPECT_EQ(changed.name, "b");
  EXPECT_EQ(changed.x, 1.5);
  EXPECT_EQ(original.name, "a");
}

TEST(CoreAdditions, ProportionalValueRelatesAValueToTheBounds) {
  struct Row {
    const char* label;
    ClosedRange<double> range;
    double value;
    double expected;
  };
  const Row rows[] = {
      {"lower bound", {10, 20}, 10, 0},     {"upper bound", {10, 20}, 20, 1},
      {"inside", {10, 20}, 12.5, 0.25},     {"below, not clamped", {10, 20}, 5, -0.5},
      {"above, not clamped", {10, 20}, 30, 2}, {"negative bounds", {-4, -2}, -3, 0.5},
      {"single point", {3, 3}, 3, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_DOUBLE_EQ(proportionalValue(row.range, row.value), row.expected);
  }
}

TEST(CoreAdditions, NextStaysWithinTheClosedRangeAndReachesBothBounds) {
  std::mt19937_64 generator(42);
  std::set<std::int64_t> seen;
  for (int i = 0; i < 400; ++i) {
    const std::int64_t value = next(generator, ClosedRange<std::int64_t>::make(-2, 2));
    ASSERT_TRUE(value >= -2 && value <= 2) << value;
    seen.insert(value);
  }
  EXPECT_EQ(seen.size(), 5u);
  EXPECT_EQ(next(generator, ClosedRange<std::int64_t>::make(7, 7)), 7);
  const auto full = ClosedRange<std::int64_t>::make(std::numeric_limits<std::int64_t>::min(),
                                                    std::numeric_limits<std::int64_t>::max());
  (void)next(generator, full);  // the widest range must not overflow
}

TEST(CoreAdditions, MovingPutsTheElementsBeforeTheOneAtTheDestination) {
  const std::vector<char> letters{'a', 'b', 'c', 'd', 'e'};
  struct Row {
    const char* label;
    std::set<std::size_t> offsets;
    std::size_t toOffset;
    std::string expected;
  };
  const Row rows[] = {
      {"one element forward", {0}, 3, "bcade"},
      {"one element back", {3}, 1, "adbce"},
      {"to the end", {1}, 5, "acdeb"},
      {"to the start", {4}, 0, "eabcd"},
      {"to its own offset", {2}, 2, "abcde"},
      {"to the offset after it", {2}, 3, "abcde"},
      {"several keep their order", {0, 2}, 4, "bdace"},
      {"several, destination among them", {1, 2, 4}, 2, "abced"},
      {"nothing moved", {}, 1, "abcde"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    const auto moved = moving(letters, row.offsets, row.toOffset);
    EXPECT_EQ(std::string(moved.begin(), moved.end()), row.expected);
  }
}

TEST(CoreAdditionsDeathTest, MovingOutOfRangeStops) {
  const std::vector<int> values{1, 2, 3};
  EXPECT_DEATH((void)moving(values, {3}, 0), "IconwrightFoundation/CoreAdditions:[0-9]+: Assertion Failure: Offset out of range");
  EXPECT_DEATH((void)moving(values, {0}, 4), "Assertion Failure: Destination offset out of range");
  EXPECT_DEATH((void)ClosedRange<int>::make(2, 1), "Assertion Failure: Range requires lowerBound <= upperBound");
}

}  // namespace
}  // namespace iconwright
