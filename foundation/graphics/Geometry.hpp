// Plane geometry in double precision: points, sizes, vectors, rectangles and affine transforms.
// The rectangle rules follow the platform's: a null rect (origin at +infinity) stands for "no
// rect", intersections keep touching edges as zero-width rects, integral rounds outward, and
// containment of a point includes the min edges but not the max edges. Transforms are the
// row-vector 3x3 matrix [a b 0; c d 0; tx ty 1]: x' = a·x + c·y + tx, y' = b·x + d·y + ty.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <limits>

#include "foundation/support/Hashing.hpp"

namespace iconwright {

struct AffineTransform;

struct Point {
  double x = 0, y = 0;

  [[nodiscard]] static constexpr Point zero() { return {}; }
  [[nodiscard]] constexpr Point applying(const AffineTransform& t) const;
  friend constexpr bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0, height = 0;

  [[nodiscard]] static constexpr Size zero() { return {}; }
  /// Transforms the size as a vector: the translation is ignored and the result may be negative.
  [[nodiscard]] constexpr Size applying(const AffineTransform& t) const;
  friend constexpr bool operator==(const Size&, const Size&) = default;
};

struct Vector {
  double dx = 0, dy = 0;

  [[nodiscard]] static constexpr Vector zero() { return {}; }
  /// The translation is ignored.
  [[nodiscard]] constexpr Vector applying(const AffineTransform& t) const;
  friend constexpr bool operator==(const Vector&, const Vector&) = default;
};

struct AffineTransform {
  double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

  [[nodiscard]] static constexpr AffineTransform identity() { return {}; }
  [[nodiscard]] static constexpr AffineTransform makeTranslation(double tx, double ty) {
    return {1, 0, 0, 1, tx, ty};
  }
  [[nodiscard]] static constexpr AffineTransform makeScale(double sx, double sy) {
    return {sx, 0, 0, sy, 0, 0};
  }
  /// Counter-clockwise in a y-up system, by `angle` radians. Not snapped: a quarter turn leaves
  /// cos(π/2) ≈ 6e-17 in place of zero, as the platform does.
  [[nodiscard]] static AffineTransform makeRotation(double angle);

  [[nodiscard]] constexpr bool isIdentity() const { return *this == identity(); }

  /// `*this` followed by `t2`: a point goes through `*this` first.
  [[nodiscard]] constexpr AffineTransform concatenating(const AffineTransform& t2) const {
    return {a * t2.a + b * t2.c,           a * t2.b + b * t2.d,
            c * t2.a + d * t2.c,           c * t2.b + d * t2.d,
            tx * t2.a + ty * t2.c + t2.tx, tx * t2.b + ty * t2.d + t2.ty};
  }
  /// The translation is applied before `*this` (it acts in the transform's own coordinates).
  [[nodiscard]] constexpr AffineTransform translatedBy(double x, double y) const {
    return makeTranslation(x, y).concatenating(*this);
  }
  [[nodiscard]] constexpr AffineTransform scaledBy(double sx, double sy) const {
    return makeScale(sx, sy).concatenating(*this);
  }
  [[nodiscard]] AffineTransform rotatedBy(double angle) const;
  /// A singular matrix (determinant exactly zero) comes back unchanged.
  [[nodiscard]] constexpr AffineTransform inverted() const {
    const double det = a * d - b * c;
    if (det == 0) return *this;
    return {d / det, -b / det, -c / det, a / det, (c * ty - d * tx) / det, (b * tx - a * ty) / det};
  }

  friend constexpr bool operator==(const AffineTransform&, const AffineTransform&) = default;
};

constexpr Point Point::applying(const AffineTransform& t) const {
  return {t.a * x + t.c * y + t.tx, t.b * x + t.d * y + t.ty};
}
constexpr Size Size::applying(const AffineTransform& t) const {
  return {t.a * width + t.c * height, t.b * width + t.d * height};
}
constexpr Vector Vector::applying(const AffineTransform& t) const {
  return {t.a * dx + t.c * dy, t.b * dx + t.d * dy};
}

/// Origin and size; the size may be negative (such a rect reaches left of or below its origin).
/// Everything that builds a new rect returns it standardized.
struct Rect {
  Point origin;
  Size size;

  /// "No rect": origin at (+inf, +inf), size zero. Union ignores it; intersections produce it.
  [[nodiscard]] static constexpr Rect null() {
    constexpr double inf = std::numeric_limits<double>::infinity();
    return {{inf, inf}, {0, 0}};
  }
  /// Covers the whole plane: origin (-max/2, -max/2), size (max, max).
  [[nodiscard]] static constexpr Rect infinite() {
    constexpr double m = std::numeric_limits<double>::max();
    return {{-m / 2, -m / 2}, {m, m}};
  }
  [[nodiscard]] static constexpr Rect makeXYWH(double x, double y, double w, double h) {
    return {{x, y}, {w, h}};
  }
  [[nodiscard]] static constexpr Rect makeLTRB(double l, double t, double r, double b) {
    return {{l, t}, {r - l, b - t}};
  }

  [[nodiscard]] constexpr double minX() const { return origin.x + std::min(size.width, 0.0); }
  [[nodiscard]] constexpr double midX() const { return origin.x + size.width / 2; }
  [[nodiscard]] constexpr double maxX() const { return origin.x + std::max(size.width, 0.0); }
  [[nodiscard]] constexpr double minY() const { return origin.y + std::min(size.height, 0.0); }
  [[nodiscard]] constexpr double midY() const { return origin.y + size.height / 2; }
  [[nodiscard]] constexpr double maxY() const { return origin.y + std::max(size.height, 0.0); }
  /// Never negative.
  [[nodiscard]] constexpr double width() const { return size.width < 0 ? -size.width : size.width; }
  [[nodiscard]] constexpr double height() const {
    return size.height < 0 ? -size.height : size.height;
  }

  /// True when either origin coordinate is +infinity.
  [[nodiscard]] constexpr bool isNull() const {
    constexpr double inf = std::numeric_limits<double>::infinity();
    return origin.x == inf || origin.y == inf;
  }
  /// Null, or zero width or zero height.
  [[nodiscard]] constexpr bool isEmpty() const {
    return isNull() || size.width == 0 || size.height == 0;
  }
  [[nodiscard]] constexpr bool isInfinite() const { return *this == infinite(); }

  /// Non-negative size, same area. Null stays null.
  [[nodiscard]] constexpr Rect standardized() const {
    if (isNull()) return null();
    return {{minX(), minY()}, {width(), height()}};
  }
  /// The smallest rect with integer edges containing this one: origin floored, far edges ceiled.
  /// A zero-size rect at (0.5, 0.5) becomes (0, 0, 1, 1). Null stays null.
  [[nodiscard]] Rect integral() const;
  /// Null operands are ignored (null if both are); empty non-null rects are not.
  [[nodiscard]] constexpr Rect unionWith(const Rect& r) const {
    if (isNull()) return r.standardized();
    if (r.isNull()) return standardized();
    const double x0 = std::min(minX(), r.minX()), y0 = std::min(minY(), r.minY());
    const double x1 = std::max(maxX(), r.maxX()), y1 = std::max(maxY(), r.maxY());
    return {{x0, y0}, {x1 - x0, y1 - y0}};
  }
  /// Closed intervals: rects that only touch give a zero-width or zero-height rect, not null.
  [[nodiscard]] constexpr Rect intersection(const Rect& r) const {
    if (isNull() || r.isNull()) return null();
    const double x0 = std::max(minX(), r.minX()), y0 = std::max(minY(), r.minY());
    const double x1 = std::min(maxX(), r.maxX()), y1 = std::min(maxY(), r.maxY());
    if (x0 > x1 || y0 > y1) return null();
    return {{x0, y0}, {x1 - x0, y1 - y0}};
  }
  [[nodiscard]] constexpr bool intersects(const Rect& r) const { return !intersection(r).isNull(); }
  /// Min edges inside, max edges outside; an empty rect contains no point.
  [[nodiscard]] constexpr bool contains(Point p) const {
    if (isEmpty()) return false;
    return p.x >= minX() && p.x < maxX() && p.y >= minY() && p.y < maxY();
  }
  /// True when the union with `r` is this rect (standardized): every rect contains null, null
  /// contains only null.
  [[nodiscard]] constexpr bool contains(const Rect& r) const {
    return unionWith(r) == standardized();
  }
  /// Moves every edge inward by dx / dy (outward when negative); null when the size would go
  /// negative. Null stays null.
  [[nodiscard]] constexpr Rect insetBy(double dx, double dy) const {
    if (isNull()) return *this;
    Rect s = standardized();
    s.origin.x += dx;
    s.origin.y += dy;
    s.size.width -= 2 * dx;
    s.size.height -= 2 * dy;
    if (s.size.width < 0 || s.size.height < 0) return null();
    return s;
  }
  [[nodiscard]] constexpr Rect offsetBy(double dx, double dy) const {
    if (isNull()) return *this;
    Rect s = standardized();
    s.origin.x += dx;
    s.origin.y += dy;
    return s;
  }
  /// The smallest rect containing the four transformed corners. Null stays null.
  [[nodiscard]] constexpr Rect applying(const AffineTransform& t) const {
    if (isNull()) return *this;
    const Point corners[4] = {Point{minX(), minY()}.applying(t), Point{maxX(), minY()}.applying(t),
                              Point{minX(), maxY()}.applying(t), Point{maxX(), maxY()}.applying(t)};
    double x0 = corners[0].x, y0 = corners[0].y, x1 = x0, y1 = y0;
    for (const Point& p : corners) {
      x0 = std::min(x0, p.x);
      y0 = std::min(y0, p.y);
      x1 = std::max(x1, p.x);
      y1 = std::max(y1, p.y);
    }
    return {{x0, y0}, {x1 - x0, y1 - y0}};
  }

  friend constexpr bool operator==(const Rect&, const Rect&) = default;
};

/// Readable forms for diagnostics and test failures: "(x, y)", "(x, y, w, h)", "[a b c d tx ty]".
std::ostream& operator<<(std::ostream& out, const Point& p);
std::ostream& operator<<(std::ostream& out, const Size& s);
std::ostream& operator<<(std::ostream& out, const Vector& v);
std::ostream& operator<<(std::ostream& out, const Rect& r);
std::ostream& operator<<(std::ostream& out, const AffineTransform& t);

}  // namespace iconwright

template <>
struct std::hash<iconwright::Point> {
  std::size_t operator()(const iconwright::Point& p) const noexcept {
    return iconwright::hashFields(p.x, p.y);
  }
};
template <>
struct std::hash<iconwright::Size> {
  std::size_t operator()(const iconwright::Size& s) const noexcept {
    return iconwright::hashFields(s.width, s.height);
  }
};
template <>
struct std::hash<iconwright::Vector> {
  std::size_t operator()(const iconwright::Vector& v) const noexcept {
    return iconwright::hashFields(v.dx, v.dy);
  }
};
template <>
struct std::hash<iconwright::Rect> {
  std::size_t operator()(const iconwright::Rect& r) const noexcept {
    return iconwright::hashFields(r.origin.x, r.origin.y, r.size.width, r.size.height);
  }
};
template <>
struct std::hash<iconwright::AffineTransform> {
  std::size_t operator()(const iconwright::AffineTransform& t) const noexcept {
    return iconwright::hashFields(t.a, t.b, t.c, t.d, t.tx, t.ty);
  }
};
