#include "bench/IconPicture.hpp"

#include <algorithm>
#include <cmath>

namespace iconwright::bench {

namespace {

constexpr double pi = 3.14159265358979323846;

double roundedBox(double x, double y, double cx, double cy, double half, double radius) {
  const double qx = std::fabs(x - cx) - half + radius, qy = std::fabs(y - cy) - half + radius;
  const double outside = std::hypot(std::max(qx, 0.0), std::max(qy, 0.0));
  return outside + std::min(std::max(qx, qy), 0.0) - radius;
}

double circle(double x, double y, double cx, double cy, double r) {
  return std::hypot(x - cx, y - cy) - r;
}

/// A wheel of `teeth` square-ish teeth: radius alternating between r and r + depth.
double wheel(double x, double y, double cx, double cy, double r, double depth, int teeth) {
  const double angle = std::atan2(y - cy, x - cx);
  const double phase = std::fmod(angle * teeth / (2 * pi) + 100, 1.0);
  const double edge = r + (phase < 0.5 ? depth : 0);
  return std::hypot(x - cx, y - cy) - edge;
}

double segment(double x, double y, double ax, double ay, double bx, double by, double width) {
  const double dx = bx - ax, dy = by - ay;
  const double t = std::clamp(((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
  return std::hypot(x - ax - t * dx, y - ay - t * dy) - width / 2;
}

/// Coverage of a one-pixel anti-aliased edge at signed distance d (negative inside).
double edgeCoverage(double d) { return std::clamp(0.5 - d, 0.0, 1.0); }

}  // namespace

std::vector<std::uint8_t> drawIconRGBA() {
  std::vector<std::uint8_t> rgba(std::size_t(iconSize) * iconSize * 4);
  for (int py = 0; py < iconSize; ++py) {
    for (int px = 0; px < iconSize; ++px) {
      const double x = px + 0.5, y = py + 0.5;
      const double body = roundedBox(x, y, 500, 500, 400, 180);
      double alpha = edgeCoverage(body);
      // A soft glow around the body, fading out over about 12 pixels.
      if (body > 0) alpha = std::max(alpha, 0.35 * std::exp(-body * body / 50.0));
      // The toothed wheel breaks out at the lower right.
      alpha = std::max(alpha, edgeCoverage(wheel(x, y, 780, 780, 190, 34, 28)));
      // A large hole, a grille of small holes, and a ring-shaped slot.
      alpha *= 1 - edgeCoverage(circle(x, y, 330, 330, 95));
      for (int row = 0; row < 6; ++row) {
        for (int col = 0; col < 6; ++col) {
          const double cx = 560 + col * 44, cy = 200 + row * 44;
          if (std::fabs(x - cx) < 30 && std::fabs(y - cy) < 30) {
            alpha *= 1 - edgeCoverage(circle(x, y, cx, cy, 9 + (row + col) % 4 * 3));
          }
        }
      }
      const double ring = std::fabs(circle(x, y, 330, 700, 110)) - 9;
      alpha *= 1 - edgeCoverage(ring);
      alpha *= 1 - edgeCoverage(circle(x, y, 780, 780, 70));
      // Thin strokes in the open glow area and across the body.
      for (int i = 0; i < 4; ++i) {
        const double offset = i * 26;
        alpha = std::max(alpha, edgeCoverage(segment(x, y, 140 + offset, 980, 420 + offset, 930, 1.6)));
      }
      const double shade = 0.55 + 0.45 * std::sin(x / 180) * std::cos(y / 220);
      std::uint8_t* p = &rgba[(std::size_t(py) * iconSize + std::size_t(px)) * 4];
      p[0] = std::uint8_t(std::lround(255 * shade));
      p[1] = std::uint8_t(std::lround(255 * (1 - y / iconSize)));
      p[2] = std::uint8_t(std::lround(255 * x / iconSize));
      p[3] = std::uint8_t(std::lround(255 * alpha));
    }
  }
  return rgba;
}

}  // namespace iconwright::bench
