#include "foundation/hitmask/RectangleIntersector.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "foundation/hitmask/HitMask.hpp"
#include "tests/hitmask/MaskPictures.hpp"

namespace iconwright {
namespace {

using testing::randomMask;

/// The plain answer: any non-zero pixel within the rect rounded outward and clipped.
bool scanAnswer(const HitMask& mask, const Rect& rect) {
  const Rect r = rect.integral();
  if (r.isNull() || std::isnan(r.minX()) || std::isnan(r.minY())) return false;
  const auto clampEdge = [](double v, int limit) { return int(std::clamp(v, 0.0, double(limit))); };
  const int x0 = clampEdge(r.minX(), mask.width()), x1 = clampEdge(r.maxX(), mask.width());
  const int y0 = clampEdge(r.minY(), mask.height()), y1 = clampEdge(r.maxY(), mask.height());
  for (int y = y0; y < y1; ++y) {
    for (int x = x0; x < x1; ++x) {
      if (mask.isCovered(x, y)) return true;
    }
  }
  return false;
}

TEST(HitMaskRectangleIntersector, SlicesHalveByIntegerDivisionDownToTheMinimumSize) {
  const auto leaves = [](int width, int height, int slice) {
    return HitMask(width, height).rectangleIntersector(slice).leafSlices();
  };
  EXPECT_EQ(leaves(32, 32, 32), (std::vector<Rect>{Rect::makeXYWH(0, 0, 32, 32)}));
  // 33 × 1 splits once; the two children with hh = 0 have no height.
  EXPECT_EQ(leaves(33, 1, 32),
            (std::vector<Rect>{Rect::makeXYWH(0, 0, 16, 0), Rect::makeXYWH(0, 0, 16, 1),
                               Rect::makeXYWH(16, 0, 17, 0), Rect::makeXYWH(16, 0, 17, 1)}));
  EXPECT_EQ(leaves(5, 3, 2),
            (std::vector<Rect>{Rect::makeXYWH(0, 0, 2, 1), Rect::makeXYWH(0, 1, 2, 2),
                               Rect::makeXYWH(2, 0, 1, 0), Rect::makeXYWH(2, 0, 1, 1),
                               Rect::makeXYWH(3, 0, 2, 0), Rect::makeXYWH(3, 0, 2, 1),
                               Rect::makeXYWH(2, 1, 1, 1), Rect::makeXYWH(2, 2, 1, 1),
                               Rect::makeXYWH(3, 1, 2, 1), Rect::makeXYWH(3, 2, 2, 1)}));
  EXPECT_EQ(leaves(1024, 1024, 32).size(), 1024u);
  EXPECT_EQ(leaves(0, 0, 32), (std::vector<Rect>{Rect::makeXYWH(0, 0, 0, 0)}));
}

TEST(HitMaskRectangleIntersector, ZeroHeightSlicesNeverReportCoverage) {
  const HitMask line(std::vector<std::uint8_t>(33, 255), 33, 1);
  const auto tree = line.rectangleIntersector(32);
  EXPECT_FALSE(tree.anyPixelsIntersect(Rect::makeXYWH(0, 0, 16, 0)));
  EXPECT_FALSE(tree.anyPixelsIntersect(Rect::makeXYWH(-1, 0, 40, 0)));
  EXPECT_TRUE(tree.anyPixelsIntersect(Rect::makeXYWH(0, 0, 16, 1)));
  EXPECT_TRUE(tree.anyPixelsIntersect(Rect::makeXYWH(32.5, 0.5, 0, 0)));
}

TEST(HitMaskRectangleIntersector, EdgeCases) {
  HitMask mask(64, 64);
  mask.setCoverage(1, Rect::makeXYWH(10, 10, 20, 20));
  mask.setCoverage(0.01, 40, 50);
  const auto tree = mask.rectangleIntersector(32);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    const char* label;
    Rect rect;
    bool expected;
  } rows[] = {
      {"encloses the whole mask", Rect::makeXYWH(-5, -5, 100, 100), true},
      {"infinite", Rect::infinite(), true},
      {"null", Rect::null(), false},
      {"NaN", Rect::makeXYWH(nan, 0, 10, 10), false},
      {"outside the mask", Rect::makeXYWH(70, 0, 10, 10), false},
      {"left of the mask, touching its edge", Rect::makeXYWH(-10, 0, 10, 64), false},
      {"ends on the edge of the covered square", Rect::makeXYWH(0, 0, 10, 64), false},
      {"reaches a hair into the square", Rect::makeXYWH(0, 0, 10.001, 11), true},
      {"a faint pixel counts", Rect::makeXYWH(39.9, 49.9, 0.2, 0.2), true},
      {"negative size", Rect::makeXYWH(45, 55, -5, -5), true},
      {"empty rect inside a covered pixel", Rect::makeXYWH(15.5, 15.5, 0, 0), true},
      {"empty rect on a grid point", Rect::makeXYWH(15, 15, 0, 0), false},
      {"zero-width rect across the square", Rect::makeXYWH(15.5, 0, 0, 64), true},
      {"empty rect in an empty area", Rect::makeXYWH(5.5, 5.5, 0, 0), false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(tree.anyPixelsIntersect(row.rect), row.expected);
    EXPECT_EQ(scanAnswer(mask, row.rect), row.expected);
  }
  EXPECT_FALSE(HitMask(64, 64).rectangleIntersector(32).anyPixelsIntersect(Rect::infinite()));
}

TEST(HitMaskRectangleIntersector, AgreesWithAScanOfTheRectangle) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> coordinate(-8, 72);
  std::uniform_real_distribution<double> extent(-4, 24);
  std::uniform_int_distribution<int> grid(-2, 70);
  for (int round = 0; round < 40; ++round) {
    const HitMask mask = randomMask(random, 1 + round * 7 % 67, 1 + round * 13 % 61,
                                    round % 2 ? 0.002 : 0.02);
    for (int slice : {1, 3, 8, 32}) {
      const auto tree = mask.rectangleIntersector(slice);
      for (int query = 0; query < 150; ++query) {
        // Whole, fractional and empty rects, on and off the grid lines.
        const Rect rect = query % 3 == 0
                              ? Rect::makeXYWH(grid(random), grid(random), grid(random) / 4,
                                               grid(random) / 4)
                          : query % 3 == 1 ? Rect::makeXYWH(coordinate(random), coordinate(random),
                                                            extent(random), extent(random))
                                           : Rect::makeXYWH(coordinate(random), coordinate(random), 0,
                                                            query % 2 ? 0 : extent(random));
        if (tree.anyPixelsIntersect(rect) != scanAnswer(mask, rect)) {
          ADD_FAILURE() << "mask " << mask.width() << "×" << mask.height() << ", slice " << slice
                        << ", rect " << rect;
          return;
        }
      }
    }
  }
}

TEST(HitMaskRectangleIntersectorDeathTest, SliceSizeMustBePositive) {
  EXPECT_DEATH((void)HitMask(4, 4).rectangleIntersector(0),
               "IconwrightFoundation/HitMask:[0-9]+: Assertion Failure: ");
}

}  // namespace
}  // namespace iconwright
