#include "foundation/hitmask/Outline.hpp"

#include <algorithm>
#include <cmath>

#include "foundation/support/Assertions.hpp"

namespace iconwright {

namespace {

constexpr const char* source = "HitMask";

double distanceBetween(Point a, Point b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  return std::sqrt(dx * dx + dy * dy);
}

/// Removes the points whose flag is set, keeping the order of the rest.
void removeFlagged(std::vector<Point>& points, const std::vector<char>& flagged) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (!flagged[i]) points[kept++] = points[i];
  }
  points.resize(kept);
}

}  // namespace

HitMaskOutline::HitMaskOutline(std::vector<Point> points) : points_(std::move(points)) {
  if (points_.size() <= 2) ICONWRIGHT_FATAL(source, "");
}

double HitMaskOutline::length() const {
  const std::size_t n = points_.size();
  double total = 0;
  for (std::size_t i = 0; i < n; ++i) {
    total += distanceBetween(points_[i], points_[i + 1 < n ? i + 1 : 0]);
  }
  return total;
}

void HitMaskOutline::removeRedundantPoints() {
  const std::size_t n = points_.size();
  if (n == 0) return;
  std::vector<char> redundant(n, 0);
  for (std::size_t i = 0; i < n; ++i) {
    const Point prev = points_[i > 0 ? i - 1 : n - 1], cur = points_[i],
                next = points_[i + 1 < n ? i + 1 : 0];
    if (prev == cur) {
      redundant[i] = (next.x == cur.x) != (next.y == cur.y);
    } else {
      redundant[i] = (prev.x == cur.x && cur.x == next.x) || (prev.y == cur.y && cur.y == next.y);
    }
  }
  removeFlagged(points_, redundant);
}

void HitMaskOutline::introduceDiagonals() {
  const std::size_t n = points_.size();
  if (n == 0) return;
  std::vector<char> cut(n, 0);
  for (std::size_t i = 0; i < n; ++i) {
    const Point prev = points_[i > 0 ? i - 1 : n - 1], cur = points_[i],
                next = points_[i + 1 < n ? i + 1 : 0];
    const bool notOnLeft =
        (next.y - prev.y) * (cur.x - prev.x) <= (next.x - prev.x) * (cur.y - prev.y);
    const bool unitStep = std::fabs(prev.x - next.x) == 1 || std::fabs(prev.y - next.y) == 1;
    cut[i] = notOnLeft && unitStep;
  }
  removeFlagged(points_, cut);
}

void HitMaskOutline::smooth() {
  removeRedundantPoints();
  introduceDiagonals();
}

HitMaskOutline HitMaskOutline::smoothed() const {
  HitMaskOutline copy = *this;
  copy.smooth();
  return copy;
}

HitMaskOutline HitMaskOutline::offset(Point by) const {
  HitMaskOutline copy = *this;
  for (Point& p : copy.points_) p = {p.x + by.x, p.y + by.y};
  return copy;
}

HitMaskOutline::WalkEnd HitMaskOutline::walk(Point position, std::size_t nextIndex,
                                             double distance) const {
  const std::size_t n = points_.size();
  if (n < 2) ICONWRIGHT_FATAL(source, "");
  double remaining = distance;
  std::size_t wrapped = nextIndex % n;
  while (true) {
    const Point target = points_[wrapped];
    const double d = distanceBetween(position, target);
    if (remaining <= d) {
      const double f = remaining / d;
      return {{position.x + f * (target.x - position.x), position.y + f * (target.y - position.y)},
              nextIndex};
    }
    remaining -= d;
    position = target;
    ++nextIndex;
    if (++wrapped == n) wrapped = 0;
  }
}

bool HitMaskOutline::hasNoisyEdges() const {
  if (points_.empty() || !(length() > 0)) return false;
  constexpr double stretch = 8.0;
  Point position = points_.front();
  std::size_t index = 0, noisy = 0, stretches = 0;
  while (index < points_.size()) {
    const WalkEnd end = walk(position, index, stretch);
    if (stretch / distanceBetween(position, end.position) >= 2.4) ++noisy;
    ++stretches;
    position = end.position;
    index = end.nextIndex;
  }
  return double(noisy) / double(stretches) > 0.05;
}

Path HitMaskOutline::path() const {
  Path path;
  if (points_.empty()) return path;
  path.moveTo(points_.front());
  for (std::size_t i = 1; i < points_.size(); ++i) path.lineTo(points_[i]);
  path.closeSubpath();
  return path;
}

bool HitMaskLine::isOnLeft(Point point) const {
  return (end.y - start.y) * (point.x - start.x) > (end.x - start.x) * (point.y - start.y);
}

double HitMaskLine::distance(Point point) const {
  const double dx = end.x - start.x, dy = end.y - start.y;
  const double lengthSquared = dx * dx + dy * dy;
  if (std::sqrt(lengthSquared) == 0) return distanceBetween(point, start);
  const double t =
      std::clamp(((point.x - start.x) * dx + (point.y - start.y) * dy) / lengthSquared, 0.0, 1.0);
  return distanceBetween(point, {start.x + t * dx, start.y + t * dy});
}

}  // namespace iconwright
