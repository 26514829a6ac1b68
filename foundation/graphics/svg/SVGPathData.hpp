// The small languages inside SVG geometry attributes: path data (every command, arcs turned
// into cubic curves), transform lists, number lists (points, view boxes) and lengths with
// their units. Used by the compound path walk; offered separately so they can be tested.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Path.hpp"

namespace iconwright {

/// Path data as SVG draws it: on an error, everything before the bad command is kept.
[[nodiscard]] Path parseSVGPathData(std::string_view data);

/// Appends the elliptical arc from `from` to `to` (the path data's A command) as cubic curves
/// of at most a quarter turn each. Zero radii make a straight line; too small radii are
/// scaled up; equal end points draw nothing.
void addSVGArc(Path& path, Point from, double rx, double ry, double xAxisRotation, bool largeArc,
               bool sweep, Point to);

/// A transform list ("translate(10) rotate(45 5 5) matrix(…)"): the functions apply right to
/// left to a point, as written. Absent when the text is malformed (SVG then ignores it).
[[nodiscard]] std::optional<AffineTransform> parseSVGTransform(std::string_view text);

/// Numbers separated by blanks and/or single commas; absent on anything else.
[[nodiscard]] std::optional<std::vector<double>> parseSVGNumberList(std::string_view text);

struct SVGLength {
  enum class Unit : std::uint8_t { none, px, percent, em, ex, in, cm, mm, pt, pc };
  double value = 0;
  Unit unit = Unit::none;

  /// User units; percentages of `reference`, em at 16 px (the default font size of 12 pt).
  [[nodiscard]] double resolved(double reference) const;
};

/// A number with an optional unit; absent when the text is something else.
[[nodiscard]] std::optional<SVGLength> parseSVGLength(std::string_view text);

}  // namespace iconwright
