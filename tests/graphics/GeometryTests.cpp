#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <unordered_set>

#include "foundation/graphics/Geometry.hpp"

namespace iconwright {
namespace {

constexpr Rect xywh(double x, double y, double w, double h) { return Rect::makeXYWH(x, y, w, h); }

static_assert(Rect::makeLTRB(1, 2, 4, 6) == xywh(1, 2, 3, 4));
static_assert(xywh(5, 5, -2, -3).standardized() == xywh(3, 2, 2, 3));
static_assert(AffineTransform::makeScale(2, 3).inverted() ==
              AffineTransform{0.5, 0, 0, 1.0 / 3, 0, 0});

TEST(Rect, NullAndEmptyAndInfinite) {
  EXPECT_TRUE(Rect::null().isNull());
  EXPECT_TRUE(Rect::null().isEmpty());
  EXPECT_TRUE(xywh(INFINITY, 0, 5, 5).isNull());
  EXPECT_FALSE(xywh(0, 0, 0, 5).isNull());
  EXPECT_TRUE(xywh(0, 0, 0, 5).isEmpty());
  EXPECT_TRUE(xywh(0, 0, 5, 0).isEmpty());
  EXPECT_FALSE(xywh(0, 0, -1, -1).isEmpty());
  EXPECT_TRUE(Rect::infinite().isInfinite());
  EXPECT_FALSE(Rect::infinite().isEmpty());
  EXPECT_EQ(xywh(4, 6, -3, -5).width(), 3);
  EXPECT_EQ(xywh(4, 6, -3, -5).height(), 5);
  EXPECT_EQ(xywh(4, 6, -3, -5).minX(), 1);
  EXPECT_EQ(xywh(4, 6, -3, -5).maxY(), 6);
  EXPECT_EQ(xywh(4, 6, -3, -5).midX(), 2.5);
}

TEST(Rect, Integral) {
  struct Case { Rect in, out; };
  const Case cases[] = {
      {xywh(1.9, 1.9, 10.1, 10.2), xywh(1, 1, 11, 12)},
      {xywh(1.9, 1.9, -10.1, -10.2), xywh(-9, -9, 11, 11)},
      {xywh(-1.9, -1.9, 10.1, 10.2), xywh(-2, -2, 11, 11)},
      {xywh(-1.9, -1.9, -10.1, -10.2), xywh(-12, -13, 11, 12)},
      {xywh(0.5, 0.5, 0, 0), xywh(0, 0, 1, 1)},
      {xywh(2, 3, 4, 5), xywh(2, 3, 4, 5)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.in));
    EXPECT_EQ(c.in.integral(), c.out);
  }
  EXPECT_TRUE(Rect::null().integral().isNull());
}

TEST(Rect, Union) {
  const Rect a = xywh(0, 0, 10, 10);
  EXPECT_EQ(a.unionWith(xywh(20, 5, -5, 10)), xywh(0, 0, 20, 15));
  EXPECT_EQ(a.unionWith(Rect::null()), a);
  EXPECT_EQ(Rect::null().unionWith(xywh(10, 10, -10, -10)), a);
  EXPECT_TRUE(Rect::null().unionWith(Rect::null()).isNull());
  // An empty rect still stretches the union.
  EXPECT_EQ(a.unionWith(xywh(30, 30, 0, 0)), xywh(0, 0, 30, 30));
  EXPECT_TRUE(a.unionWith(Rect::infinite()).isInfinite());
}

TEST(Rect, IntersectionKeepsTouchingEdges) {
  struct Case { const char* label; Rect a, b, out; };
  const Case cases[] = {
      {"overlap", xywh(0, 0, 10, 10), xywh(5, -5, 10, 10), xywh(5, 0, 5, 5)},
      {"unstandardized", xywh(10, 10, -10, -10), xywh(5, 5, 10, 10), xywh(5, 5, 5, 5)},
      {"touching", xywh(0, 0, 10, 10), xywh(10, 2, 5, 5), xywh(10, 2, 0, 5)},
      {"zero rect inside", xywh(-10, -10, 20, 20), xywh(0, 0, 0, 0), xywh(0, 0, 0, 0)},
      {"infinite", Rect::infinite(), xywh(1, 2, 3, 4), xywh(1, 2, 3, 4)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(c.a.intersection(c.b), c.out);
    EXPECT_EQ(c.b.intersection(c.a), c.out);
    EXPECT_TRUE(c.a.intersects(c.b));
  }
  EXPECT_TRUE(xywh(0, 0, 10, 10).intersection(xywh(10.5, 0, 1, 1)).isNull());
  EXPECT_FALSE(xywh(0, 0, 10, 10).intersects(xywh(0, 11, 1, 1)));
  EXPECT_TRUE(xywh(0, 0, 10, 10).intersection(Rect::null()).isNull());
}

TEST(Rect, ContainsPointExcludesMaxEdges) {
  const Rect r = xywh(0, 0, 10, 10);
  struct Case { Point p; bool inside; };
  const Case cases[] = {{{0, 0}, true},   {{5, 5}, true},    {{9.999, 0}, true},
                        {{10, 5}, false}, {{5, 10}, false},  {{-0.001, 5}, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.p));
    EXPECT_EQ(r.contains(c.p), c.inside);
  }
  EXPECT_TRUE(xywh(10, 10, -10, -10).contains(Point{0, 0}));
  EXPECT_FALSE(xywh(0, 0, 0, 10).contains(Point{0, 0}));
  EXPECT_FALSE(Rect::null().contains(Point{INFINITY, INFINITY}));
}

TEST(Rect, ContainsRectIsUnionEquality) {
  const Rect zero;
  EXPECT_TRUE(zero.contains(zero));
  EXPECT_TRUE(xywh(3, 3, 1, 1).contains(Rect::null()));
  EXPECT_FALSE(Rect::null().contains(zero));
  EXPECT_TRUE(xywh(0, 0, 10, 10).contains(xywh(10, 10, 0, 0)));
  EXPECT_TRUE(xywh(10, 10, -10, -10).contains(xywh(2, 2, 3, 3)));
  EXPECT_FALSE(xywh(0, 0, 10, 10).contains(xywh(5, 5, 6, 1)));
}

TEST(Rect, InsetOffsetAndTransform) {
  EXPECT_EQ(xywh(0, 0, 10, 10).insetBy(2, 3), xywh(2, 3, 6, 4));
  EXPECT_EQ(xywh(0, 0, 10, 10).insetBy(-1, -1), xywh(-1, -1, 12, 12));
  EXPECT_TRUE(xywh(0, 0, 10, 10).insetBy(6, 0).isNull());
  EXPECT_EQ(xywh(0, 0, 10, 10).insetBy(5, 5), xywh(5, 5, 0, 0));
  EXPECT_EQ(xywh(10, 10, -10, -10).offsetBy(1, 2), xywh(1, 2, 10, 10));
  EXPECT_TRUE(Rect::null().offsetBy(1, 1).isNull());

  const Rect rotated = xywh(0, 0, 10, 20).applying(AffineTransform::makeRotation(std::numbers::pi / 2));
  EXPECT_NEAR(rotated.minX(), -20, 1e-12);
  EXPECT_NEAR(rotated.maxX(), 0, 1e-12);
  EXPECT_NEAR(rotated.minY(), 0, 1e-12);
  EXPECT_NEAR(rotated.maxY(), 10, 1e-12);
  EXPECT_EQ(xywh(1, 1, 2, 2).applying(AffineTransform::makeScale(-2, 3).translatedBy(1, 0)),
            xywh(-8, 3, 4, 6));
  EXPECT_TRUE(Rect::null().applying(AffineTransform::makeScale(2, 2)).isNull());
}

TEST(AffineTransform, ConcatenationOrder) {
  const auto scale = AffineTransform::makeScale(2, 3);
  const auto move = AffineTransform::makeTranslation(10, 20);
  // concatenating: the receiver acts first.
  EXPECT_EQ(Point(1, 1).applying(scale.concatenating(move)), Point(12, 23));
  EXPECT_EQ(Point(1, 1).applying(move.concatenating(scale)), Point(22, 63));
  // translatedBy / scaledBy act in the transform's own coordinates, before it.
  EXPECT_EQ(scale.translatedBy(10, 20), move.concatenating(scale));
  EXPECT_EQ(move.scaledBy(2, 3), scale.concatenating(move));
  const auto quarter = AffineTransform::identity().rotatedBy(std::numbers::pi / 2);
  const Point turned = Point(1, 0).applying(quarter);
  EXPECT_NEAR(turned.x, 0, 1e-15);
  EXPECT_EQ(turned.y, 1);
  // Sizes and vectors ignore the translation.
  EXPECT_EQ(Size(2, 5).applying(move.scaledBy(-1, 1)), Size(-2, 5));
  EXPECT_EQ(Vector(1, 1).applying(move), Vector(1, 1));
}

TEST(AffineTransform, InversionAndSingularMatrices) {
  const AffineTransform t = AffineTransform::makeTranslation(5, -7).rotatedBy(0.3).scaledBy(2, 4);
  const AffineTransform round = t.concatenating(t.inverted());
  EXPECT_NEAR(round.a, 1, 1e-12);
  EXPECT_NEAR(round.b, 0, 1e-12);
  EXPECT_NEAR(round.c, 0, 1e-12);
  EXPECT_NEAR(round.d, 1, 1e-12);
  EXPECT_NEAR(round.tx, 0, 1e-12);
  EXPECT_NEAR(round.ty, 0, 1e-12);
  const AffineTransform singular{1, 2, 2, 4, 3, 3};
  EXPECT_EQ(singular.inverted(), singular);
  EXPECT_EQ(AffineTransform::makeScale(0, 1).inverted(), AffineTransform::makeScale(0, 1));
  EXPECT_TRUE(AffineTransform::identity().inverted().isIdentity());
}

TEST(Geometry, EqualityIsExactAndHashFollowsIt) {
  EXPECT_NE(Point(0.1 + 0.2, 0), Point(0.3, 0));
  EXPECT_EQ(Point(-0.0, 0), Point(0.0, 0));
  EXPECT_EQ(std::hash<Point>{}(Point(-0.0, 0)), std::hash<Point>{}(Point(0.0, 0)));
  std::unordered_set<Rect> rects{xywh(0, 0, 1, 1), xywh(0, 0, 1, 1), xywh(0, 0, 1, 2)};
  EXPECT_EQ(rects.size(), 2u);
  std::unordered_set<AffineTransform> transforms{AffineTransform::identity(),
                                                 AffineTransform::makeScale(1, 1)};
  EXPECT_EQ(transforms.size(), 1u);
}

}  // namespace
}  // namespace iconwright
