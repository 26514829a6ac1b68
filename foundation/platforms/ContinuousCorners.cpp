#include "foundation/platforms/ContinuousCorners.hpp"

#include <algorithm>
#include <array>

namespace iconwright {

namespace {

// One corner in units of the radius. A point (along, across) lies `along` back from the corner
// on the edge the path arrives by and `across` forward on the edge it leaves by.
struct CornerPoint {
  double along, across;
};

struct CornerCurve {
  CornerPoint control1, control2, end;
};

constexpr CornerPoint cornerEntry{1.52866471, 0};
constexpr CornerCurve firstCurve{{1.08849323, 0}, {0.86840689, 0}, {0.66993427, 0.06549600}};
constexpr CornerPoint shortLineEnd{0.63149399, 0.07491100};
constexpr CornerCurve middleCurve{{0.37282392, 0.16905899}, {0.16906013, 0.37282401}, {0.07491176, 0.63149399}};
constexpr CornerCurve lastCurve{{0, 0.86840701}, {0, 1.08849299}, {0, continuousCornerExtent}};

// A corner of the rect and the unit directions of its two edges, seen from the corner.
struct CornerFrame {
  Point corner;
  Vector backAlongArrival;
  Vector forwardAlongDeparture;

  [[nodiscard]] Point place(CornerPoint p, double radius) const {
    return {corner.x + radius * (p.along * backAlongArrival.dx + p.across * forwardAlongDeparture.dx),
            corner.y + radius * (p.along * backAlongArrival.dy + p.across * forwardAlongDeparture.dy)};
  }
};

}  // namespace

Path continuousCornerRoundedRect(const Rect& rect, double radius) {
  if (rect.isEmpty()) return Path::makeRect(rect);
  const Rect r = rect.standardized();
  const double limit = std::min(r.width(), r.height()) / 2 / continuousCornerExtent;
  const double cornerRadius = std::min(radius, limit);
  if (!(cornerRadius > 0)) return Path::makeRect(r);

  // The corners in path order: from the min-y edge round by max-x, max-y and min-x.
  const std::array<CornerFrame, 4> corners = {{
      {{r.maxX(), r.minY()}, {-1, 0}, {0, 1}},
      {{r.maxX(), r.maxY()}, {0, -1}, {-1, 0}},
      {{r.minX(), r.maxY()}, {1, 0}, {0, -1}},
      {{r.minX(), r.minY()}, {0, 1}, {1, 0}},
  }};

  Path path;
  path.moveTo(corners[3].place(lastCurve.end, cornerRadius));
  for (const CornerFrame& frame : corners) {
    const auto curve = [&](const CornerCurve& c) {
      path.curveTo(frame.place(c.control1, cornerRadius), frame.place(c.control2, cornerRadius),
                   frame.place(c.end, cornerRadius));
    };
    path.lineTo(frame.place(cornerEntry, cornerRadius));
    curve(firstCurve);
    path.lineTo(frame.place(shortLineEnd, cornerRadius));
    curve(middleCurve);
    curve(lastCurve);
  }
  path.closeSubpath();
  return path;
}

}  // namespace iconwright
