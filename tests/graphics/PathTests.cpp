#include <gtest/gtest.h>

#include <cmath>

#include "foundation/graphics/Path.hpp"

namespace iconwright {
namespace {

using Kind = PathElement::Kind;

Path circle(Point centre, double radius) {
  return Path::makeEllipse(
      Rect::makeXYWH(centre.x - radius, centre.y - radius, 2 * radius, 2 * radius));
}

// A 1024-point rounded square whose corners are single cubic curves reaching 40 % of the side,
// the way continuous corners are drawn.
Path roundedSquare() {
  const double s = 1024, r = 400, k = 0.2;
  Path p;
  p.moveTo({r, 0});
  p.lineTo({s - r, 0});
  p.curveTo({s - r * k, 0}, {s, r * k}, {s, r});
  p.lineTo({s, s - r});
  p.curveTo({s, s - r * k}, {s - r * k, s}, {s - r, s});
  p.lineTo({r, s});
  p.curveTo({r * k, s}, {0, s - r * k}, {0, s - r});
  p.lineTo({0, r});
  p.curveTo({0, r * k}, {r * k, 0}, {r, 0});
  p.closeSubpath();
  return p;
}

Point cubicPoint(Point p0, Point p1, Point p2, Point p3, double t) {
  const double u = 1 - t;
  return {u * u * u * p0.x + 3 * u * u * t * p1.x + 3 * u * t * t * p2.x + t * t * t * p3.x,
          u * u * u * p0.y + 3 * u * u * t * p1.y + 3 * u * t * t * p2.y + t * t * t * p3.y};
}

TEST(Path, BuildingElements) {
  Path p;
  EXPECT_FALSE(p.currentPoint());
  p.lineTo({1, 1});  // no current point: starts a subpath instead
  p.lineTo({5, 1});
  p.closeSubpath();
  EXPECT_EQ(p.currentPoint(), Point(1, 1));
  p.quadCurveTo({3, 3}, {1, 5});  // after a close: a new subpath at the old start
  p.closeSubpath();
  p.closeSubpath();  // nothing open: ignored
  ASSERT_EQ(p.elements().size(), 6u);
  const Kind kinds[] = {Kind::moveTo, Kind::lineTo, Kind::closeSubpath,
                        Kind::moveTo, Kind::quadCurveTo, Kind::closeSubpath};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(p.elements()[i].kind, kinds[i]) << i;
  EXPECT_EQ(p.elements()[3].points[0], Point(1, 1));

  const Path rect = Path::makeRect(Rect::makeXYWH(4, 4, -2, -2));
  ASSERT_EQ(rect.elements().size(), 5u);
  EXPECT_EQ(rect.elements()[0].points[0], Point(2, 2));
  EXPECT_EQ(rect.elements()[1].points[0], Point(4, 2));
  EXPECT_EQ(rect.elements()[2].points[0], Point(4, 4));
  EXPECT_TRUE(Path::makeRect(Rect::null()).isEmpty());

  const Path moved = rect.transformed(AffineTransform::makeTranslation(10, 0));
  EXPECT_EQ(moved.elements()[0].points[0], Point(12, 2));
  Path both = rect;
  both.addPath(rect, AffineTransform::makeScale(2, 2));
  EXPECT_EQ(both.elements().size(), 10u);
  EXPECT_EQ(both.boundingBox(), Rect::makeXYWH(2, 2, 6, 6));
}

TEST(Path, BoundingBoxes) {
  EXPECT_TRUE(Path().boundingBox().isNull());
  EXPECT_TRUE(Path().pathBoundingBox().isNull());

  Path cubic;
  cubic.moveTo({0, 0});
  cubic.curveTo({0, 100}, {100, 100}, {100, 0});
  EXPECT_EQ(cubic.boundingBox(), Rect::makeXYWH(0, 0, 100, 100));
  EXPECT_EQ(cubic.pathBoundingBox(), Rect::makeXYWH(0, 0, 100, 75));

  Path quad;
  quad.moveTo({0, 0});
  quad.quadCurveTo({50, -100}, {100, 0});
  EXPECT_EQ(quad.pathBoundingBox(), Rect::makeXYWH(0, -50, 100, 50));

  const Rect oval = Rect::makeXYWH(10, 20, 300, 100);
  const Rect ellipseBox = Path::makeEllipse(oval).pathBoundingBox();
  EXPECT_NEAR(ellipseBox.minX(), 10, 1e-12);
  EXPECT_NEAR(ellipseBox.maxY(), 120, 1e-12);
  EXPECT_EQ(Path::makeEllipse(oval).boundingBox(), oval);

  // Asymmetric curves: the tight box must hold every sampled point and be reached by one.
  const Point curves[][4] = {{{0, 0}, {10, 40}, {90, -20}, {100, 0}},
                             {{5, 5}, {-30, 80}, {130, 90}, {40, -10}},
                             {{0, 0}, {100, 0}, {0, 100}, {100, 100}}};
  for (const auto& c : curves) {
    SCOPED_TRACE(::testing::PrintToString(c[1]));
    Path p;
    p.moveTo(c[0]);
    p.curveTo(c[1], c[2], c[3]);
    const Rect box = p.pathBoundingBox();
    Rect sampled = Rect::null();
    for (int i = 0; i <= 100000; ++i)
      sampled = sampled.unionWith(Rect{cubicPoint(c[0], c[1], c[2], c[3], i / 100000.0), {}});
    EXPECT_NEAR(box.minX(), sampled.minX(), 1e-6);
    EXPECT_NEAR(box.maxX(), sampled.maxX(), 1e-6);
    EXPECT_NEAR(box.minY(), sampled.minY(), 1e-6);
    EXPECT_NEAR(box.maxY(), sampled.maxY(), 1e-6);
    EXPECT_TRUE(box.insetBy(-1e-9, -1e-9).contains(sampled));
  }
  const Rect rounded = roundedSquare().pathBoundingBox();
  EXPECT_EQ(rounded, Rect::makeXYWH(0, 0, 1024, 1024));
}

TEST(Path, ContainsWithEdgesInside) {
  const Path square = Path::makeRect(Rect::makeXYWH(0, 0, 10, 10));
  struct Case { Point p; bool inside; };
  const Case cases[] = {{{5, 5}, true},       {{0, 0}, true},       {{10, 10}, true},
                        {{10, 3}, true},      {{3, 10}, true},      {{0, 7}, true},
                        {{10.001, 5}, false}, {{5, -0.001}, false}, {{-1, -1}, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.p));
    EXPECT_EQ(square.contains(c.p), c.inside);
    EXPECT_EQ(square.contains(c.p, FillRule::evenOdd), c.inside);
  }
  Path diagonal;
  diagonal.moveTo({0, 0});
  diagonal.lineTo({3, 9});
  diagonal.lineTo({0, 9});
  EXPECT_TRUE(diagonal.contains({1, 3}));  // on the slanted edge
  EXPECT_TRUE(diagonal.contains({1, 6}));   // never closed, filled all the same
  EXPECT_FALSE(diagonal.contains({2, 3}));
}

TEST(Path, FillRules) {
  Path sameDirection = Path::makeRect(Rect::makeXYWH(0, 0, 100, 100));
  sameDirection.addRect(Rect::makeXYWH(25, 25, 50, 50));
  Path reversed = Path::makeRect(Rect::makeXYWH(0, 0, 100, 100));
  reversed.moveTo({25, 25});
  reversed.lineTo({25, 75});
  reversed.lineTo({75, 75});
  reversed.lineTo({75, 25});
  reversed.closeSubpath();
  const Point hole{50, 50}, ring{10, 50};
  EXPECT_TRUE(sameDirection.contains(hole, FillRule::winding));
  EXPECT_FALSE(sameDirection.contains(hole, FillRule::evenOdd));
  EXPECT_FALSE(reversed.contains(hole, FillRule::winding));
  EXPECT_FALSE(reversed.contains(hole, FillRule::evenOdd));
  EXPECT_TRUE(sameDirection.contains(ring, FillRule::evenOdd));
  EXPECT_TRUE(reversed.contains({25, 50}, FillRule::evenOdd));  // the hole's edge

  const Path dot = circle({0, 0}, 1);
  const Point onArc{std::cos(0.3), std::sin(0.3)};
  EXPECT_TRUE(dot.contains(onArc));
  EXPECT_FALSE(dot.contains({onArc.x * 1.02, onArc.y * 1.02}));
}

TEST(Path, ContinuousCornerShape) {
  const Path shape = roundedSquare();
  EXPECT_TRUE(shape.contains({512, 512}));
  EXPECT_FALSE(shape.contains({1, 1}));
  EXPECT_FALSE(shape.contains({1023, 1}));
  EXPECT_TRUE(shape.contains({512, 0}));
  // Probe along the normal at the middle of the top-right corner curve.
  const double s = 1024, r = 400, k = 0.2;
  const Point p0{s - r, 0}, p1{s - r * k, 0}, p2{s, r * k}, p3{s, r};
  const Point mid = cubicPoint(p0, p1, p2, p3, 0.5);
  const double n = std::sqrt(0.5);  // the curve is symmetric: its normal there is diagonal
  EXPECT_TRUE(shape.contains({mid.x - 0.02 * n, mid.y + 0.02 * n}));
  EXPECT_FALSE(shape.contains({mid.x + 0.02 * n, mid.y - 0.02 * n}));

  // Small circles just outside and just inside that point of the corner.
  const double radius = 20;
  for (double gap : {0.05, -0.05}) {
    SCOPED_TRACE(gap);
    const Point centre{mid.x + (radius + gap) * n, mid.y - (radius + gap) * n};
    EXPECT_EQ(shape.intersects(circle(centre, radius)), gap < 0);
    EXPECT_EQ(circle(centre, radius).intersects(shape), gap < 0);
  }
}

TEST(Path, IntersectsFilledPaths) {
  const Path a = circle({300, 300}, 200);
  struct Case { const char* label; Path other; bool expected; };
  const Case cases[] = {
      {"circles 0.05 apart", circle({300 + 400.05, 300}, 200), false},
      {"circles overlapping by 0.05", circle({300 + 399.95, 300}, 200), true},
      {"diagonal circles 0.08 apart", circle({300 + 282.9, 300 + 282.9}, 200), false},
      {"circle inside, no edges meet", circle({310, 290}, 20), true},
      {"square around it", Path::makeRect(Rect::makeXYWH(0, 0, 1000, 1000)), true},
      {"square touching the left", Path::makeRect(Rect::makeXYWH(50, 0, 50, 600)), true},
      {"square beside the left", Path::makeRect(Rect::makeXYWH(40, 0, 59.9, 600)), false},
      {"empty", Path(), false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(a.intersects(c.other), c.expected);
    EXPECT_EQ(c.other.intersects(a), c.expected);
  }

  // A small square in the hole of a ring: only the winding rule fills the hole.
  Path ring = Path::makeRect(Rect::makeXYWH(0, 0, 100, 100));
  ring.addRect(Rect::makeXYWH(20, 20, 60, 60));
  const Path inHole = Path::makeRect(Rect::makeXYWH(40, 40, 10, 10));
  EXPECT_TRUE(ring.intersects(inHole, FillRule::winding));
  EXPECT_FALSE(ring.intersects(inHole, FillRule::evenOdd));
  EXPECT_FALSE(inHole.intersects(ring, FillRule::evenOdd));
  EXPECT_TRUE(Path::makeRect(Rect::makeXYWH(10, 40, 20, 10)).intersects(ring, FillRule::evenOdd));
  // A lone moveTo fills nothing.
  Path point;
  point.moveTo({50, 50});
  EXPECT_FALSE(point.intersects(Path::makeRect(Rect::makeXYWH(0, 0, 100, 100))));
}

}  // namespace
}  // namespace iconwright
