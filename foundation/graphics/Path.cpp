#include "foundation/graphics/Path.hpp"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace iconwright {
namespace {

using Kind = PathElement::Kind;

constexpr double kEllipseKappa = 0.5522847498307936;  // 4/3 (√2 − 1)
constexpr int kMaxCurveSegments = 4096;
// Distance within which a point counts as lying on a straight edge, absorbing rounding only.
constexpr double kLineTolerance = 1e-9;

double length(double x, double y) { return std::hypot(x, y); }

// Wang's bound on how many chords keep a Bézier of the given degree within `Path::flatness`.
int segmentCount(double secondDifference, double degreeFactor) {
  const double n = std::ceil(std::sqrt(degreeFactor * secondDifference / Path::flatness));
  if (!(n >= 1)) return 1;  // also catches NaN
  return static_cast<int>(std::min(n, double(kMaxCurveSegments)));
}

Point quadAt(Point p0, Point p1, Point p2, double t) {
  const double u = 1 - t;
  const double a = u * u, b = 2 * u * t, c = t * t;
  return {a * p0.x + b * p1.x + c * p2.x, a * p0.y + b * p1.y + c * p2.y};
}

Point cubicAt(Point p0, Point p1, Point p2, Point p3, double t) {
  const double u = 1 - t;
  const double a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
  return {a * p0.x + b * p1.x + c * p2.x + d * p3.x, a * p0.y + b * p1.y + c * p2.y + d * p3.y};
}

// Whether the curve's control points keep it more than the flatness away from `probe`: then
// its chord has the same effect on the winding number about `probe` (both lie wholly beside,
// above, below or to the right of it) and is no nearer to it than the curve.
bool isCurveAwayFrom(const Point* probe, std::initializer_list<Point> points) {
  if (probe == nullptr) return false;
  double x0 = INFINITY, x1 = -INFINITY, y0 = INFINITY, y1 = -INFINITY;
  for (const Point& p : points) {
    x0 = std::min(x0, p.x);
    x1 = std::max(x1, p.x);
    y0 = std::min(y0, p.y);
    y1 = std::max(y1, p.y);
  }
  const double margin = Path::flatness;
  return probe->x < x0 - margin || probe->x > x1 + margin || probe->y < y0 - margin ||
         probe->y > y1 + margin;
}

// Chords of a cubic as seen from `probe`: halves are split further only while they come near
// it and are not yet flat, so a containment test flattens just the part of a curve around the
// point. Returns true when `edge` asks to stop.
template <class EdgeFunction>
bool subdivideNear(const Point& probe, Point p0, Point p1, Point p2, Point p3,
                   EdgeFunction& edge, int depth = 0) {
  const double m = std::max(length(p0.x - 2 * p1.x + p2.x, p0.y - 2 * p1.y + p2.y),
                            length(p1.x - 2 * p2.x + p3.x, p1.y - 2 * p2.y + p3.y));
  if (depth >= 24 || 0.75 * m <= Path::flatness || isCurveAwayFrom(&probe, {p0, p1, p2, p3}))
    return edge(p0, p3, true);
  auto mid = [](Point a, Point b) { return Point{(a.x + b.x) / 2, (a.y + b.y) / 2}; };
  const Point a = mid(p0, p1), b = mid(p1, p2), c = mid(p2, p3);
  const Point ab = mid(a, b), bc = mid(b, c), centre = mid(ab, bc);
  return subdivideNear(probe, p0, a, ab, centre, edge, depth + 1) ||
         subdivideNear(probe, centre, bc, c, p3, edge, depth + 1);
}

// Calls edge(a, b, fromCurve) for every chord of the filled outline: curves flattened, every
// subpath closed. Stops early when `edge` returns true; returns whether it did. With a `probe`,
// curves are flattened only near it (see subdivideNear): for containment of that point.
template <class EdgeFunction>
bool forEachEdge(const std::vector<PathElement>& elements, EdgeFunction&& edge,
                 const Point* probe = nullptr) {
  Point current, start;
  bool open = false;
  auto closeCurrent = [&]() -> bool {
    const bool stop = open && current != start && edge(current, start, false);
    current = start;
    return stop;
  };
  for (const PathElement& e : elements) {
    switch (e.kind) {
      case Kind::moveTo:
        if (closeCurrent()) return true;
        start = current = e.points[0];
        open = true;
        break;
      case Kind::lineTo:
        if (edge(current, e.points[0], false)) return true;
        current = e.points[0];
        break;
      case Kind::quadCurveTo: {
        const Point p0 = current, p1 = e.points[0], p2 = e.points[1];
        if (probe != nullptr) {
          // As the cubic with the same shape.
          const Point c1{p0.x + 2.0 / 3 * (p1.x - p0.x), p0.y + 2.0 / 3 * (p1.y - p0.y)};
          const Point c2{p2.x + 2.0 / 3 * (p1.x - p2.x), p2.y + 2.0 / 3 * (p1.y - p2.y)};
          if (subdivideNear(*probe, p0, c1, c2, p2, edge)) return true;
          current = p2;
          break;
        }
        const int n = segmentCount(length(p0.x - 2 * p1.x + p2.x, p0.y - 2 * p1.y + p2.y), 0.25);
        Point previous = p0;
        for (int i = 1; i <= n; ++i) {
          const Point next = i == n ? p2 : quadAt(p0, p1, p2, double(i) / n);
          if (edge(previous, next, true)) return true;
          previous = next;
        }
        current = p2;
        break;
      }
      case Kind::curveTo: {
        const Point p0 = current, p1 = e.points[0], p2 = e.points[1], p3 = e.points[2];
        if (probe != nullptr) {
          if (subdivideNear(*probe, p0, p1, p2, p3, edge)) return true;
          current = p3;
          break;
        }
        const double m = std::max(length(p0.x - 2 * p1.x + p2.x, p0.y - 2 * p1.y + p2.y),
                                  length(p1.x - 2 * p2.x + p3.x, p1.y - 2 * p2.y + p3.y));
        const int n = segmentCount(m, 0.75);
        Point previous = p0;
        for (int i = 1; i <= n; ++i) {
          const Point next = i == n ? p3 : cubicAt(p0, p1, p2, p3, double(i) / n);
          if (edge(previous, next, true)) return true;
          previous = next;
        }
        current = p3;
        break;
      }
      case Kind::closeSubpath:
        if (closeCurrent()) return true;
        open = false;
        break;
    }
  }
  return closeCurrent();
}

// > 0 when p is left of a→b (counter-clockwise in a y-up system), < 0 right, 0 on the line.
double orientation(Point a, Point b, Point p) {
  return (b.x - a.x) * (p.y - a.y) - (p.x - a.x) * (b.y - a.y);
}

double distanceToSegment(Point p, Point a, Point b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double lengthSquared = dx * dx + dy * dy;
  double t = lengthSquared > 0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / lengthSquared : 0;
  t = std::clamp(t, 0.0, 1.0);
  return length(p.x - (a.x + t * dx), p.y - (a.y + t * dy));
}

// Accumulates the winding number of one edge about p (upward crossings count +1).
void accumulateWinding(int& winding, Point a, Point b, Point p) {
  if (a.y <= p.y) {
    if (b.y > p.y && orientation(a, b, p) > 0) ++winding;
  } else if (b.y <= p.y && orientation(a, b, p) < 0) {
    --winding;
  }
}

bool isFilled(int winding, FillRule rule) {
  return rule == FillRule::winding ? winding != 0 : (winding & 1) != 0;
}

struct Edge {
  Point a, b;
  double minX, maxX, minY, maxY;
  bool fromCurve;
};

struct Flattened {
  std::vector<Edge> edges;
  // One point on each chain of connected edges: every point of an edge belongs to the fill.
  std::vector<Point> subpathStarts;
};

Flattened flatten(const std::vector<PathElement>& elements) {
  Flattened result;
  forEachEdge(elements, [&](Point a, Point b, bool fromCurve) {
    if (result.edges.empty() || result.edges.back().b != a) result.subpathStarts.push_back(a);
    result.edges.push_back({a, b, std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y),
                            std::max(a.y, b.y), fromCurve});
    return false;
  });
  return result;
}

bool containsInEdges(const std::vector<Edge>& edges, Point p, FillRule rule) {
  int winding = 0;
  for (const Edge& e : edges) {
    if (p.y < e.minY - Path::flatness || p.y > e.maxY + Path::flatness) {
      // The edge neither reaches p nor crosses its horizontal: no effect on the winding.
      continue;
    }
    const double tolerance = e.fromCurve ? Path::flatness : kLineTolerance;
    if (p.x >= e.minX - tolerance && p.x <= e.maxX + tolerance &&
        distanceToSegment(p, e.a, e.b) <= tolerance)
      return true;
    accumulateWinding(winding, e.a, e.b, p);
  }
  return isFilled(winding, rule);
}

bool onSegment(Point a, Point b, Point p) {
  return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
         p.y <= std::max(a.y, b.y);
}

// Closed segments: touching and collinear overlap count.
bool segmentsMeet(const Edge& e, const Edge& f) {
  const double d1 = orientation(f.a, f.b, e.a), d2 = orientation(f.a, f.b, e.b);
  const double d3 = orientation(e.a, e.b, f.a), d4 = orientation(e.a, e.b, f.b);
  if (((d1 > 0 && d2 < 0) || (d1 < 0 && d2 > 0)) && ((d3 > 0 && d4 < 0) || (d3 < 0 && d4 > 0)))
    return true;
  return (d1 == 0 && onSegment(f.a, f.b, e.a)) || (d2 == 0 && onSegment(f.a, f.b, e.b)) ||
         (d3 == 0 && onSegment(e.a, e.b, f.a)) || (d4 == 0 && onSegment(e.a, e.b, f.b));
}

// Sweep along x over the edges of both outlines that reach the common box; true when an edge of
// one meets an edge of the other.
bool anyEdgesMeet(const std::vector<Edge>& first, const std::vector<Edge>& second, const Rect& box) {
  struct Entry { const Edge* edge; int owner; };
  std::vector<Entry> entries;
  auto gather = [&](const std::vector<Edge>& edges, int owner) {
    for (const Edge& e : edges)
      if (e.maxX >= box.minX() && e.minX <= box.maxX() && e.maxY >= box.minY() &&
          e.minY <= box.maxY() && e.a != e.b)
        entries.push_back({&e, owner});
  };
  gather(first, 0);
  gather(second, 1);
  std::sort(entries.begin(), entries.end(),
            [](const Entry& l, const Entry& r) { return l.edge->minX < r.edge->minX; });
  std::vector<const Edge*> active[2];
  for (const Entry& entry : entries) {
    const Edge& e = *entry.edge;
    std::vector<const Edge*>& others = active[1 - entry.owner];
    std::erase_if(others, [&](const Edge* o) { return o->maxX < e.minX; });
    for (const Edge* o : others)
      if (o->maxY >= e.minY && o->minY <= e.maxY && segmentsMeet(e, *o)) return true;
    active[entry.owner].push_back(&e);
  }
  return false;
}

void includeQuadExtrema(Rect& box, Point p0, Point p1, Point p2) {
  auto extremum = [](double a, double b, double c) -> double {
    const double denominator = a - 2 * b + c;
    return denominator != 0 ? (a - b) / denominator : -1;
  };
  for (double t : {extremum(p0.x, p1.x, p2.x), extremum(p0.y, p1.y, p2.y)})
    if (t > 0 && t < 1) box = box.unionWith(Rect{quadAt(p0, p1, p2, t), {}});
}

// Roots in (0, 1) of the derivative of one coordinate of a cubic.
int cubicCriticalPoints(double p0, double p1, double p2, double p3, double roots[2]) {
  // B'(t)/3 = A t² + 2 B t + C with A = a − 2b + c, B = b − a, C = a, for successive differences.
  const double a = p1 - p0, b = p2 - p1, c = p3 - p2;
  const double qa = a - 2 * b + c, qb = 2 * (b - a), qc = a;
  int count = 0;
  auto add = [&](double t) {
    if (t > 0 && t < 1) roots[count++] = t;
  };
  if (qa == 0) {
    if (qb != 0) add(-qc / qb);
    return count;
  }
  const double discriminant = qb * qb - 4 * qa * qc;
  if (discriminant < 0) return count;
  const double root = std::sqrt(discriminant);
  // The stable pair: q = −(b + sign(b)·√d)/2, roots q/a and c/q.
  const double q = -0.5 * (qb + std::copysign(root, qb));
  if (q != 0) {  // q = 0 only for the double root t = 0, outside the open interval
    add(q / qa);
    add(qc / q);
  }
  return count;
}

}  // namespace

Path Path::makeRect(const Rect& rect) {
  Path path;
  path.addRect(rect);
  return path;
}

Path Path::makeEllipse(const Rect& rect) {
  Path path;
  path.addEllipse(rect);
  return path;
}

void Path::moveTo(Point p) {
  elements_.push_back({Kind::moveTo, {p, {}, {}}});
  subpathStart_ = p;
  open_ = true;
}

void Path::ensureSubpath(Point p) {
  if (open_) return;
  moveTo(elements_.empty() ? p : subpathStart_);
}

void Path::lineTo(Point p) {
  if (elements_.empty()) return moveTo(p);
  ensureSubpath(p);
  elements_.push_back({Kind::lineTo, {p, {}, {}}});
}

void Path::quadCurveTo(Point control, Point end) {
  ensureSubpath(control);
  elements_.push_back({Kind::quadCurveTo, {control, end, {}}});
}

void Path::curveTo(Point control1, Point control2, Point end) {
  ensureSubpath(control1);
  elements_.push_back({Kind::curveTo, {control1, control2, end}});
}

void Path::closeSubpath() {
  if (!open_) return;
  elements_.push_back({Kind::closeSubpath, {}});
  open_ = false;
}

void Path::addRect(const Rect& rect) {
  if (rect.isNull()) return;
  const Rect r = rect.standardized();
  moveTo({r.minX(), r.minY()});
  lineTo({r.maxX(), r.minY()});
  lineTo({r.maxX(), r.maxY()});
  lineTo({r.minX(), r.maxY()});
  closeSubpath();
}

void Path::addEllipse(const Rect& rect) {
  if (rect.isNull()) return;
  const Rect r = rect.standardized();
  const double kx = r.width() / 2 * kEllipseKappa, ky = r.height() / 2 * kEllipseKappa;
  const double x0 = r.minX(), x1 = r.midX(), x2 = r.maxX();
  const double y0 = r.minY(), y1 = r.midY(), y2 = r.maxY();
  moveTo({x2, y1});
  curveTo({x2, y1 + ky}, {x1 + kx, y2}, {x1, y2});
  curveTo({x1 - kx, y2}, {x0, y1 + ky}, {x0, y1});
  curveTo({x0, y1 - ky}, {x1 - kx, y0}, {x1, y0});
  curveTo({x1 + kx, y0}, {x2, y1 - ky}, {x2, y1});
  closeSubpath();
}

void Path::addPath(const Path& other, const AffineTransform& transform) {
  if (other.isEmpty()) return;
  // Grow geometrically: an exact reservation on every call would copy the path each time.
  const std::size_t needed = elements_.size() + other.elements_.size();
  if (needed > elements_.capacity()) elements_.reserve(std::max(needed, 2 * elements_.capacity()));
  for (PathElement e : other.elements_) {
    for (std::size_t i = 0; i < e.pointCount(); ++i) e.points[i] = e.points[i].applying(transform);
    elements_.push_back(e);
  }
  subpathStart_ = other.subpathStart_.applying(transform);
  open_ = other.open_;
}

std::optional<Point> Path::currentPoint() const {
  if (elements_.empty()) return std::nullopt;
  const PathElement& last = elements_.back();
  if (last.kind == Kind::closeSubpath) return subpathStart_;
  return last.points[last.pointCount() - 1];
}

Path Path::transformed(const AffineTransform& transform) const {
  Path result;
  result.addPath(*this, transform);
  return result;
}

Rect Path::boundingBox() const {
  Rect box = Rect::null();
  for (const PathElement& e : elements_)
    for (std::size_t i = 0; i < e.pointCount(); ++i) box = box.unionWith(Rect{e.points[i], {}});
  return box;
}

Rect Path::pathBoundingBox() const {
  Rect box = Rect::null();
  Point current, start;
  for (const PathElement& e : elements_) {
    switch (e.kind) {
      case Kind::moveTo:
        current = start = e.points[0];
        box = box.unionWith(Rect{current, {}});
        break;
      case Kind::lineTo:
        current = e.points[0];
        box = box.unionWith(Rect{current, {}});
        break;
      case Kind::quadCurveTo:
        includeQuadExtrema(box, current, e.points[0], e.points[1]);
        current = e.points[1];
        box = box.unionWith(Rect{current, {}});
        break;
      case Kind::curveTo: {
        const Point p0 = current, p1 = e.points[0], p2 = e.points[1], p3 = e.points[2];
        double roots[2];
        const int nx = cubicCriticalPoints(p0.x, p1.x, p2.x, p3.x, roots);
        for (int i = 0; i < nx; ++i) box = box.unionWith(Rect{cubicAt(p0, p1, p2, p3, roots[i]), {}});
        const int ny = cubicCriticalPoints(p0.y, p1.y, p2.y, p3.y, roots);
        for (int i = 0; i < ny; ++i) box = box.unionWith(Rect{cubicAt(p0, p1, p2, p3, roots[i]), {}});
        current = p3;
        box = box.unionWith(Rect{current, {}});
        break;
      }
      case Kind::closeSubpath:
        current = start;
        break;
    }
  }
  return box;
}

bool Path::contains(Point p, FillRule rule) const {
  const Rect box = boundingBox().insetBy(-flatness, -flatness);
  if (box.isNull() || !(p.x >= box.minX() && p.x <= box.maxX() && p.y >= box.minY() &&
                        p.y <= box.maxY()))
    return false;
  int winding = 0;
  const bool onEdge = forEachEdge(elements_, [&](Point a, Point b, bool fromCurve) {
    const double tolerance = fromCurve ? flatness : kLineTolerance;
    if (std::min(a.y, b.y) - tolerance <= p.y && p.y <= std::max(a.y, b.y) + tolerance &&
        std::min(a.x, b.x) - tolerance <= p.x && p.x <= std::max(a.x, b.x) + tolerance &&
        distanceToSegment(p, a, b) <= tolerance)
      return true;
    accumulateWinding(winding, a, b, p);
    return false;
  }, &p);
  return onEdge || isFilled(winding, rule);
}

bool Path::intersects(const Path& other, FillRule rule) const {
  const Rect box = boundingBox(), otherBox = other.boundingBox();
  if (box.isNull() || otherBox.isNull()) return false;
  const Rect common = box.insetBy(-flatness, -flatness).intersection(otherBox);
  if (common.isNull()) return false;

  const Flattened mine = flatten(elements_), theirs = flatten(other.elements_);
  if (anyEdgesMeet(mine.edges, theirs.edges, common.insetBy(-flatness, -flatness))) return true;
  // No outlines meet, so each subpath lies wholly inside or wholly outside the other fill:
  // one point per subpath decides.
  for (Point p : mine.subpathStarts)
    if (containsInEdges(theirs.edges, p, rule)) return true;
  for (Point p : theirs.subpathStarts)
    if (containsInEdges(mine.edges, p, rule)) return true;
  return false;
}

}  // namespace iconwright
