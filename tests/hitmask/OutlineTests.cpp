#include "foundation/hitmask/Outline.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <utility>

#include "foundation/hitmask/HitMask.hpp"
#include "tests/hitmask/MaskPictures.hpp"

namespace iconwright {
namespace {

using testing::maskFromPicture;
using Points = std::vector<Point>;

constexpr const char* fatalLine = "IconwrightFoundation/HitMask:[0-9]+: Assertion Failure: ";

std::vector<Points> tracedPoints(const HitMask& mask) {
  std::vector<Points> result;
  for (const auto& outline : mask.outlinePaths()) result.push_back(outline.points());
  return result;
}

/// Twice the signed area; positive for a clockwise walk on screen (y down).
double signedArea(const Points& points) {
  double sum = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const Point a = points[i], b = points[(i + 1) % points.size()];
    sum += a.x * b.y - b.x * a.y;
  }
  return sum;
}

TEST(HitMaskOutline, SinglePixelAndEmptyMasks) {
  HitMask mask(8, 8);
  mask.setCoverage(0.01, 3, 5);
  EXPECT_EQ(tracedPoints(mask), (std::vector<Points>{{{3, 5}, {4, 5}, {4, 6}, {3, 6}}}));
  EXPECT_TRUE(HitMask(8, 8).outlinePaths().empty());
  EXPECT_TRUE(HitMask(0, 0).outlinePaths().empty());
  EXPECT_TRUE(HitMask(0, 5).outlinePaths().empty());
  // A pixel in the corners of the raster: the border counts as uncovered.
  EXPECT_EQ(tracedPoints(maskFromPicture({"#"})),
            (std::vector<Points>{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}}));
}

TEST(HitMaskOutline, ARingGivesItsOuterOutlineFirstThenItsHoleTheOtherWay) {
  const HitMask ring = maskFromPicture({".....",
                                        ".###.",
                                        ".#.#.",
                                        ".###.",
                                        "....."});
  const auto outlines = tracedPoints(ring);
  ASSERT_EQ(outlines.size(), 2u);
  EXPECT_EQ(outlines[0], (Points{{1, 1}, {2, 1}, {3, 1}, {4, 1}, {4, 2}, {4, 3}, {4, 4},
                                 {3, 4}, {2, 4}, {1, 4}, {1, 3}, {1, 2}}));
  // The hole starts at the top-left corner of its lower rim, (2, 3), going +x.
  EXPECT_EQ(outlines[1], (Points{{2, 3}, {3, 3}, {3, 2}, {2, 2}}));
  EXPECT_GT(signedArea(outlines[0]), 0);
  EXPECT_LT(signedArea(outlines[1]), 0);

  // Separate shapes come in scan order of their first free top edge; a shape whose top row
  // was passed by an earlier walk starts no second walk.
  const auto shapes = tracedPoints(maskFromPicture({"..##.",
                                                    "#....",
                                                    "##.##",
                                                    "...##"}));
  ASSERT_EQ(shapes.size(), 3u);
  EXPECT_EQ(shapes[0].front(), (Point{2, 0}));
  EXPECT_EQ(shapes[1].front(), (Point{0, 1}));
  EXPECT_EQ(shapes[2].front(), (Point{3, 2}));
}

TEST(HitMaskOutline, PixelsTouchingOnlyAtACornerAreJoinedByTheLeftTurn) {
  // At the shared corner the walk tries straight on, then left, then right.
  EXPECT_EQ(tracedPoints(maskFromPicture({"#.", ".#"})),
            (std::vector<Points>{{{0, 0}, {1, 0}, {1, 1}, {2, 1}, {2, 2}, {1, 2}, {1, 1}, {0, 1}}}));
  EXPECT_EQ(tracedPoints(maskFromPicture({".#", "#."})),
            (std::vector<Points>{{{1, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}, {0, 1}, {1, 1}}}));
  // A ring of four diagonal neighbours is one walk through all four corners of its hole; the
  // hole's lower rim was passed, so it starts no walk of its own.
  EXPECT_EQ(tracedPoints(maskFromPicture({".#.", "#.#", ".#."})),
            (std::vector<Points>{{{1, 0}, {2, 0}, {2, 1}, {3, 1}, {3, 2}, {2, 2}, {2, 3}, {1, 3},
                                  {1, 2}, {0, 2}, {0, 1}, {1, 1}}}));
}

TEST(HitMaskOutline, TracingDoesNotDependOnWhereTheShapesLie) {
  // The same random shapes alone and inside a wider, taller clear raster, against its edges or
  // away from them: the starts are found sixteen pixels at a time or one by one, and the walks
  // read inside the raster or along its border; the outlines only move.
  std::mt19937 random(5);
  for (int round = 0; round < 60; ++round) {
    const HitMask shapes = testing::randomMask(random, 1 + round % 41, 1 + round % 7, 0.5);
    const auto alone = shapes.outlinePaths();
    const int width = shapes.width() + 37, height = shapes.height() + 2;
    for (const auto& [dx, dy] : {std::pair{0, 0}, std::pair{19, 1}, std::pair{37, 2}}) {
      std::vector<std::uint8_t> bytes(std::size_t(width) * std::size_t(height), 0);
      for (int y = 0; y < shapes.height(); ++y)
        for (int x = 0; x < shapes.width(); ++x)
          bytes[std::size_t(y + dy) * std::size_t(width) + std::size_t(x + dx)] =
              shapes.bytes()[std::size_t(y) * std::size_t(shapes.width()) + std::size_t(x)];
      const auto placed = HitMask(std::move(bytes), width, height).outlinePaths();
      ASSERT_EQ(placed.size(), alone.size()) << round << " at " << dx;
      for (std::size_t i = 0; i < alone.size(); ++i) {
        ASSERT_EQ(placed[i], alone[i].offset({double(dx), double(dy)})) << round << " at " << dx << ", outline " << i;
      }
    }
  }
}

TEST(HitMaskOutline, SmoothingPasses) {
  HitMask square(4, 4);
  square.setCoverage(1, Rect::makeXYWH(1, 1, 2, 2));
  auto outline = square.outlinePaths().at(0);
  EXPECT_EQ(outline.points().size(), 8u);
  outline.removeRedundantPoints();
  EXPECT_EQ(outline.points(), (Points{{1, 1}, {3, 1}, {3, 3}, {1, 3}}));
  outline.introduceDiagonals();  // convex corners stay
  EXPECT_EQ(outline.points(), (Points{{1, 1}, {3, 1}, {3, 3}, {1, 3}}));

  // A staircase of one-pixel steps: its concave corners are cut, its slope becomes a diagonal.
  const HitMask stairs = maskFromPicture({"#...",
                                          "##..",
                                          "###.",
                                          "####"});
  const auto traced = stairs.outlinePaths().at(0);
  auto cleaned = traced;
  cleaned.removeRedundantPoints();
  EXPECT_EQ(cleaned.points(), (Points{{0, 0}, {1, 0}, {1, 1}, {2, 1}, {2, 2}, {3, 2}, {3, 3},
                                      {4, 3}, {4, 4}, {0, 4}}));
  EXPECT_EQ(traced.smoothed().points(),
            (Points{{0, 0}, {1, 0}, {2, 1}, {3, 2}, {4, 3}, {4, 4}, {0, 4}}));
  auto inPlace = traced;
  inPlace.smooth();
  EXPECT_EQ(inPlace, traced.smoothed());

  // A repeated point goes when its successor shares exactly one coordinate with it.
  HitMaskOutline repeated({{0, 0}, {0, 0}, {5, 0}, {5, 5}, {5, 5}, {7, 7}});
  repeated.removeRedundantPoints();
  // (5, 5) before its twin lies on the vertical run from (5, 0); the twin stays, since (7, 7)
  // shares no coordinate with it.
  EXPECT_EQ(repeated.points(), (Points{{0, 0}, {5, 0}, {5, 5}, {7, 7}}));

  // Every point of a straight polygon is redundant; the passes then cope with no points.
  HitMaskOutline straight({{0, 0}, {1, 0}, {2, 0}});
  straight.smooth();
  EXPECT_TRUE(straight.points().empty());
  EXPECT_EQ(straight.length(), 0);
  EXPECT_FALSE(straight.hasNoisyEdges());
  EXPECT_TRUE(straight.path().isEmpty());
}

TEST(HitMaskOutline, LengthOffsetAndPath) {
  const HitMaskOutline triangle({{0, 0}, {3, 0}, {3, 4}});
  EXPECT_EQ(triangle.length(), 12);
  EXPECT_EQ(triangle.offset({1, -2}).points(), (Points{{1, -2}, {4, -2}, {4, 2}}));

  const Path path = triangle.path();
  ASSERT_EQ(path.elements().size(), 4u);
  EXPECT_EQ(path.elements()[0].kind, PathElement::Kind::moveTo);
  EXPECT_EQ(path.elements()[0].points[0], (Point{0, 0}));
  EXPECT_EQ(path.elements()[2].kind, PathElement::Kind::lineTo);
  EXPECT_EQ(path.elements()[2].points[0], (Point{3, 4}));
  EXPECT_EQ(path.elements()[3].kind, PathElement::Kind::closeSubpath);
}

TEST(HitMaskOutline, WalkAlongThePolygonWrapsAround) {
  const HitMaskOutline square({{0, 0}, {4, 0}, {4, 4}, {0, 4}});
  const struct {
    const char* label;
    Point from;
    std::size_t index;
    double distance;
    Point end;
    std::size_t nextIndex;
  } rows[] = {
      {"within the first edge", {0, 0}, 1, 3, {3, 0}, 1},
      {"exactly onto a corner keeps its index", {0, 0}, 1, 4, {4, 0}, 1},
      {"around a corner", {0, 0}, 1, 6, {4, 2}, 2},
      {"a zero-length first leg to the start point", {0, 0}, 0, 1, {1, 0}, 1},
      {"past the last point onto the closing edge", {4, 4}, 3, 6, {0, 2}, 4},
      {"all the way round", {0, 0}, 1, 17, {1, 0}, 5},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    const auto end = square.walk(row.from, row.index, row.distance);
    EXPECT_EQ(end.position, row.end);
    EXPECT_EQ(end.nextIndex, row.nextIndex);
  }
}

TEST(HitMaskOutline, NoisyEdgesAreJudgedByEightUnitStretches) {
  // A large square: every stretch is straight or bends once.
  HitMask square(80, 80);
  square.setCoverage(1, Rect::makeXYWH(10, 10, 60, 60));
  EXPECT_FALSE(square.outlinePaths().at(0).hasNoisyEdges());

  // A comb with one-pixel teeth and gaps: stretches fold back on themselves.
  HitMask comb(80, 12);
  comb.setCoverage(1, Rect::makeXYWH(0, 6, 80, 6));
  for (int x = 0; x < 80; x += 2) comb.setCoverage(1, Rect::makeXYWH(x, 0, 1, 6));
  EXPECT_TRUE(comb.outlinePaths().at(0).hasNoisyEdges());

  // A polygon with no length is never noisy.
  EXPECT_FALSE(HitMaskOutline({{2, 2}, {2, 2}, {2, 2}}).hasNoisyEdges());
}

TEST(HitMaskOutlineDeathTest, TooFewPoints) {
  EXPECT_DEATH(HitMaskOutline({{0, 0}, {1, 1}}), fatalLine);
  EXPECT_DEATH(HitMaskOutline(Points{}), fatalLine);
  HitMaskOutline straight({{0, 0}, {1, 0}, {2, 0}});
  straight.removeRedundantPoints();
  EXPECT_DEATH((void)straight.walk({0, 0}, 0, 1), fatalLine);
}

TEST(HitMaskLine, SideAndDistance) {
  const HitMaskLine line{{0, 0}, {4, 0}};
  // y grows downward: heading +x, the left hand points to smaller y.
  EXPECT_TRUE(line.isOnLeft({2, -1}));
  EXPECT_FALSE(line.isOnLeft({2, 1}));
  EXPECT_FALSE(line.isOnLeft({9, 0}));

  const struct {
    const char* label;
    HitMaskLine line;
    Point point;
    double distance;
  } rows[] = {
      {"beside the middle", line, {2, 3}, 3},
      {"beyond the end", line, {7, 4}, 5},
      {"before the start", line, {-3, -4}, 5},
      {"on the segment", line, {1, 0}, 0},
      {"degenerate segment", {{1, 1}, {1, 1}}, {4, 5}, 5},
      {"diagonal", {{0, 0}, {2, 2}}, {2, 0}, std::sqrt(2.0)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_DOUBLE_EQ(row.line.distance(row.point), row.distance);
  }
}

}  // namespace
}  // namespace iconwright
