#include "foundation/platforms/ConstrainedPlatform.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace iconwright {
namespace {

using Sizes = std::vector<RasterSize>;

RasterSize at(double side, int scale) { return RasterSize::makeSquare(side, scale); }

ConstrainedPlatform constrained(Platform platform, bool sharedSquares) {
  SupportedPlatforms supported = SupportedPlatforms::defaultValue();
  if (!sharedSquares) supported.squares = SupportedPlatforms::Squares::unique(true, true);
  return {platform, supported};
}

Sizes suggested(const ConstrainedPlatform& platform) {
  const auto sizes = platform.suggestedPreviewSizes();
  return {sizes.begin(), sizes.end()};
}

TEST(RasterSize, PixelsEqualityAndDisplayOrder) {
  EXPECT_EQ(at(83.5, 2).pixelSize(), (Size{167, 167}));
  EXPECT_EQ((RasterSize{{10, 20}, 3}).pixelSize(), (Size{30, 60}));
  // Equality is exact in both fields: the same pixels at another scale differ.
  EXPECT_NE(at(128, 2), at(256, 1));
  EXPECT_NE((RasterSize{{128, 127}, 2}), at(128, 2));

  Sizes sizes = {at(20, 3), at(64, 2), at(83.5, 2), at(64, 3), at(1024, 1)};
  std::sort(sizes.begin(), sizes.end(),
            [](const RasterSize& a, const RasterSize& b) { return a.displayOrder() < b.displayOrder(); });
  EXPECT_EQ(sizes, (Sizes{at(1024, 1), at(83.5, 2), at(64, 3), at(64, 2), at(20, 3)}));
}

TEST(ConstrainedPlatform, PreviewSizeLists) {
  const Sizes iOS = {at(83.5, 2), at(76, 2), at(68, 2), at(64, 2), at(64, 3), at(60, 2), at(60, 3),
                     at(40, 2),   at(40, 3), at(38, 2), at(38, 3), at(29, 2), at(29, 3), at(20, 2), at(20, 3)};
  const Sizes macOS = {at(512, 1), at(256, 1), at(256, 2), at(128, 1), at(128, 2),
                       at(32, 1),  at(32, 2),  at(16, 1),  at(16, 2)};
  Sizes sharedSquares = macOS;
  sharedSquares.insert(sharedSquares.end(), iOS.begin(), iOS.end());
  Sizes watchOS;
  for (double side : {129.0, 117.0, 108.0, 98.0, 86.0, 54.0, 51.0, 50.0, 46.0, 44.0, 43.5, 40.0, 33.0, 32.0, 30.0,
                      29.0, 27.5, 24.0, 22.0}) {
    watchOS.push_back(at(side, 2));
  }

  EXPECT_EQ(suggested(constrained(Platform::iOS, false)), iOS);
  EXPECT_EQ(suggested(constrained(Platform::macOS, false)), macOS);
  EXPECT_EQ(suggested(constrained(Platform::iOS, true)), sharedSquares);
  EXPECT_EQ(suggested(constrained(Platform::macOS, true)), sharedSquares);
  EXPECT_EQ(suggested(constrained(Platform::watchOS, true)), watchOS);
  EXPECT_EQ(suggested(constrained(Platform::watchOS, false)), watchOS);

  EXPECT_EQ(constrained(Platform::macOS, false).heroPreviewSize(), at(1024, 1));
  EXPECT_EQ(constrained(Platform::watchOS, true).heroPreviewSize(), at(1088, 1));
  const Sizes all = constrained(Platform::watchOS, true).allValidPreviewSizes();
  ASSERT_EQ(all.size(), watchOS.size() + 1);
  EXPECT_EQ(all.front(), at(1088, 1));
  EXPECT_TRUE(std::equal(watchOS.begin(), watchOS.end(), all.begin() + 1));
}

TEST(ConstrainedPlatform, ClosestValidSize) {
  struct Row {
    const char* label;
    ConstrainedPlatform platform;
    RasterSize target;
    RasterSize expected;
  };
  const Row rows[] = {
      // 200 pixels wanted: 256@1 and 128@2 both miss by 56, and the earlier one wins.
      {"tie goes to the earlier size", constrained(Platform::macOS, false), at(100, 2), at(256, 1)},
      // An exact match stands even though 256@1 comes first with the same pixel width.
      {"exact match", constrained(Platform::macOS, false), at(128, 2), at(128, 2)},
      {"exact hero", constrained(Platform::watchOS, true), at(1088, 1), at(1088, 1)},
      {"the scale counts", constrained(Platform::iOS, false), at(30, 2), at(20, 3)},
      {"height plays no part", constrained(Platform::macOS, false), RasterSize{{128, 999}, 2}, at(256, 1)},
      {"beyond the hero", constrained(Platform::iOS, false), at(4096, 2), at(1024, 1)},
      {"below every size", constrained(Platform::watchOS, true), at(1, 1), at(22, 2)},
      {"shared list, iOS part", constrained(Platform::macOS, true), at(64, 3), at(64, 3)},
      {"unique macOS lacks iOS sizes", constrained(Platform::macOS, false), at(60, 3), at(128, 1)},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(row.platform.closestValidSize(row.target), row.expected);
  }
}

}  // namespace
}  // namespace iconwright
