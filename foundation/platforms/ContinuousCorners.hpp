// The rounded rectangle with continuous ("squircle") corners that shapes the square icons.
// Unlike a circular-arc corner, its curvature rises gradually from the straight edge, so each
// corner reaches about 1.53 radii along both edges. Each corner is a line, three cubic curves
// and one short line, the same for all four corners, which are rotations of one another.
#pragma once

#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Path.hpp"

namespace iconwright {

/// How far, in radii, a continuous corner reaches along each edge.
inline constexpr double continuousCornerExtent = 1.52866483;

/// A closed path around `rect` (standardized) with continuous corners of `radius`. The radius
/// is clamped so that two corners never overlap on the shorter side:
/// min(radius, min(width, height) / 2 / continuousCornerExtent). The path starts on the min-y
/// edge where the min-x corner ends, runs towards max-x, and closes there. The corners lie
/// within the rect and touch its four edges, so the path's bounds are the rect. A null or
/// empty rect, or a radius of zero or less, gives the plain rectangle.
[[nodiscard]] Path continuousCornerRoundedRect(const Rect& rect, double radius);

}  // namespace iconwright
