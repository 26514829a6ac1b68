// Path: a value-type vector path of subpaths made of lines, quadratic and cubic Bézier curves.
// It answers the geometric questions the document asks of outlines and canvas shapes: bounds
// (with or without control points), whether a point lies in the filled path, and whether two
// filled paths overlap. Filling closes every subpath implicitly; a point on an edge is inside.
// Curves are flattened to within `Path::flatness` for containment and intersection.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "foundation/graphics/Geometry.hpp"

namespace iconwright {

enum class FillRule : std::uint8_t { winding, evenOdd };

struct PathElement {
  enum class Kind : std::uint8_t { moveTo, lineTo, quadCurveTo, curveTo, closeSubpath };

  Kind kind = Kind::moveTo;
  /// moveTo/lineTo use points[0]; quadCurveTo: control, end; curveTo: control 1, control 2,
  /// end; closeSubpath none. Unused points are zero.
  std::array<Point, 3> points{};

  /// How many of `points` the kind uses.
  [[nodiscard]] constexpr std::size_t pointCount() const {
    switch (kind) {
      case Kind::moveTo:
      case Kind::lineTo: return 1;
      case Kind::quadCurveTo: return 2;
      case Kind::curveTo: return 3;
      case Kind::closeSubpath: return 0;
    }
    return 0;
  }
  friend bool operator==(const PathElement&, const PathElement&) = default;
};

class Path {
 public:
  /// Largest distance between a curve and the chords that stand for it in containment and
  /// intersection tests, in path units.
  static constexpr double flatness = 0.005;

  Path() = default;
  [[nodiscard]] static Path makeRect(const Rect& rect);
  [[nodiscard]] static Path makeEllipse(const Rect& rect);

  /// Starts a new subpath.
  void moveTo(Point p);
  /// Drawing elements need a current point; without one they start a subpath at their first
  /// point instead. After closeSubpath the current point is the start of the closed subpath and
  /// the next drawing element opens a new subpath there.
  void lineTo(Point p);
  void quadCurveTo(Point control, Point end);
  void curveTo(Point control1, Point control2, Point end);
  /// Does nothing when there is no open subpath.
  void closeSubpath();
  /// A closed subpath: (minX, minY) → (maxX, minY) → (maxX, maxY) → (minX, maxY). The rect is
  /// standardized first; a null rect adds nothing.
  void addRect(const Rect& rect);
  /// Four cubic curves approximating the ellipse inscribed in `rect`, a closed subpath starting
  /// at (maxX, midY) and running towards (midX, maxY). A null rect adds nothing.
  void addEllipse(const Rect& rect);
  /// Appends the elements of `other`, transformed.
  void addPath(const Path& other, const AffineTransform& transform = AffineTransform::identity());

  [[nodiscard]] bool isEmpty() const { return elements_.empty(); }
  [[nodiscard]] const std::vector<PathElement>& elements() const { return elements_; }
  /// The end of the last element (the subpath start after a close); absent for an empty path.
  [[nodiscard]] std::optional<Point> currentPoint() const;

  [[nodiscard]] Path transformed(const AffineTransform& transform) const;

  /// Smallest rect containing every point of every element, control points included. Null for
  /// an empty path.
  [[nodiscard]] Rect boundingBox() const;
  /// Smallest rect containing the path itself (curve extrema solved exactly, control points
  /// excluded; moveTo points count). Null for an empty path.
  [[nodiscard]] Rect pathBoundingBox() const;

  /// Whether `p` lies in the path filled with `rule`. Points on an edge count as inside.
  [[nodiscard]] bool contains(Point p, FillRule rule = FillRule::winding) const;
  /// Whether the two paths, each filled with `rule`, share at least one point (touching counts).
  [[nodiscard]] bool intersects(const Path& other, FillRule rule = FillRule::winding) const;

  friend bool operator==(const Path&, const Path&) = default;

 private:
  void ensureSubpath(Point p);
  std::vector<PathElement> elements_;
  Point subpathStart_;
  bool open_ = false;  // a subpath has been started and not closed
};

}  // namespace iconwright
