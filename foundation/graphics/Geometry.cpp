#include "foundation/graphics/Geometry.hpp"

#include <cmath>
#include <ostream>

namespace iconwright {

AffineTransform AffineTransform::makeRotation(double angle) {
  const double s = std::sin(angle), c = std::cos(angle);
  return {c, s, -s, c, 0, 0};
}

AffineTransform AffineTransform::rotatedBy(double angle) const {
  return makeRotation(angle).concatenating(*this);
}

Rect Rect::integral() const {
  if (isNull()) return *this;
  const Rect s = standardized();
  const double x = std::floor(s.origin.x), y = std::floor(s.origin.y);
  return {{x, y}, {std::ceil(s.maxX()) - x, std::ceil(s.maxY()) - y}};
}

std::ostream& operator<<(std::ostream& out, const Point& p) {
  return out << '(' << p.x << ", " << p.y << ')';
}
std::ostream& operator<<(std::ostream& out, const Size& s) {
  return out << '(' << s.width << ", " << s.height << ')';
}
std::ostream& operator<<(std::ostream& out, const Vector& v) {
  return out << '(' << v.dx << ", " << v.dy << ')';
}
std::ostream& operator<<(std::ostream& out, const Rect& r) {
  return out << '(' << r.origin.x << ", " << r.origin.y << ", " << r.size.width << ", "
             << r.size.height << ')';
}
std::ostream& operator<<(std::ostream& out, const AffineTransform& t) {
  return out << '[' << t.a << ' ' << t.b << ' ' << t.c << ' ' << t.d << ' ' << t.tx << ' ' << t.ty
             << ']';
}

}  // namespace iconwright
