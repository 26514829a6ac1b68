// RasterSize: a size in points with an integer scale, as a preview or an exported image is
// asked for. Pixels are points times scale.
#pragma once

#include <functional>
#include <iosfwd>

#include "foundation/graphics/Geometry.hpp"
#include "foundation/support/ComparableTuple.hpp"
#include "foundation/support/Hashing.hpp"

namespace iconwright {

struct RasterSize {
  Size size;
  int scale = 1;

  /// side x side points at `scale`.
  [[nodiscard]] static constexpr RasterSize makeSquare(double side, int scale) { return {{side, side}, scale}; }

  [[nodiscard]] constexpr Size pixelSize() const { return {size.width * scale, size.height * scale}; }
  /// Larger widths first, then larger scales: (-width, -scale).
  [[nodiscard]] constexpr ComparableTuple2<double, int> displayOrder() const {
    return ComparableTuple2<double, int>(-size.width, -scale);
  }

  /// Exact: both the size and the scale.
  friend constexpr bool operator==(const RasterSize&, const RasterSize&) = default;
};

/// "83.5@2" (or "100x50@2" when not square), for diagnostics and test failures.
std::ostream& operator<<(std::ostream& out, const RasterSize& size);

}  // namespace iconwright

template <>
struct std::hash<iconwright::RasterSize> {
  std::size_t operator()(const iconwright::RasterSize& value) const noexcept {
    return iconwright::hashFields(value.size, value.scale);
  }
};
