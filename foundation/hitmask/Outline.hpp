// Outlines traced along the pixel edges of a hit mask (HitMask::outlinePaths), the passes that
// smooth them, and the judgement whether one is too ragged to show as a selection outline.
// HitMaskOutline and HitMaskLine are HitMask::Outline and HitMask::Line. Points lie in pixel
// coordinates with y growing downward; an outline is closed from its last point to its first.
#pragma once

#include <cstddef>
#include <vector>

#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Path.hpp"

namespace iconwright {

class HitMaskOutline {
 public:
  /// Requires: more than 2 points (fatal assertion otherwise).
  explicit HitMaskOutline(std::vector<Point> points);

  [[nodiscard]] const std::vector<Point>& points() const { return points_; }

  /// The perimeter, closing edge included; 0 without points.
  [[nodiscard]] double length() const;

  /// Drops every point that lies on a straight run with both its neighbours (same x or same y
  /// for all three); a point equal to its predecessor goes when its successor shares exactly
  /// one coordinate with it. Decided on the unchanged list, then removed at once. May leave
  /// fewer than 3 points.
  void removeRedundantPoints();
  /// Cuts concave corners of one-pixel staircase steps: drops every point that is not strictly
  /// left of the line from its predecessor to its successor when those two are one unit apart
  /// in x or in y. Convex corners stay. Decided on the unchanged list, then removed at once.
  void introduceDiagonals();
  /// removeRedundantPoints, then introduceDiagonals, once each.
  void smooth();
  [[nodiscard]] HitMaskOutline smoothed() const;

  [[nodiscard]] HitMaskOutline offset(Point by) const;

  struct WalkEnd {
    Point position;
    /// Index (not wrapped) of the next point still ahead of `position`.
    std::size_t nextIndex = 0;
  };
  /// Walks `distance` along the closed polygon from `position` toward the point at `nextIndex`
  /// (wrapped), and on through the following points. Requires: at least 2 points (fatal
  /// otherwise) and, for a positive distance, a positive length (or it never arrives).
  [[nodiscard]] WalkEnd walk(Point position, std::size_t nextIndex, double distance) const;

  /// True when more than 5 % of the consecutive 8-unit stretches of the outline span less than
  /// 8 / 2.4 units in a straight line. False without points or without length.
  [[nodiscard]] bool hasNoisyEdges() const;

  /// Move to the first point, a line to each other point, close. Empty without points.
  [[nodiscard]] Path path() const;

  friend bool operator==(const HitMaskOutline&, const HitMaskOutline&) = default;

 private:
  std::vector<Point> points_;
};

struct HitMaskLine {
  Point start;
  Point end;

  /// Strictly left of the directed line from start to end, y growing downward taken as is:
  /// (end.y − start.y)(p.x − start.x) > (end.x − start.x)(p.y − start.y).
  [[nodiscard]] bool isOnLeft(Point point) const;
  /// Distance to the segment; to `start` when the segment has no length.
  [[nodiscard]] double distance(Point point) const;

  friend bool operator==(const HitMaskLine&, const HitMaskLine&) = default;
};

}  // namespace iconwright
