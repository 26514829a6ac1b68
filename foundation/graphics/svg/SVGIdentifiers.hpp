// The numeric identifiers that callers use for SVG attributes and node kinds, and their mapping
// to the names of the SVG standard. This is the one place that knows which number stands for
// which attribute or element: the view box (0x41), the two paints fill (0x12) and stroke
// (0x39), and the node kinds, of which 2 is a shape.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace iconwright {

/// Attributes with a numeric identifier.
enum class SVGAttributeID : std::uint16_t {
  fill = 0x12,
  stroke = 0x39,
  viewBox = 0x41,
};

/// The attribute name of an identifier: "fill", "stroke", "viewBox".
[[nodiscard]] std::string_view svgAttributeName(SVGAttributeID id);
/// The identifier of a raw number, absent for numbers that stand for no known attribute.
[[nodiscard]] std::optional<SVGAttributeID> svgAttributeIDFromNumber(std::uint16_t number);
/// The identifier of an attribute name (exact, case-sensitive), absent for other names.
[[nodiscard]] std::optional<SVGAttributeID> svgAttributeIDFromName(std::string_view name);

/// What an element is, by its local name (namespace prefixes are ignored).
enum class SVGNodeKind : std::uint8_t {
  other = 0,      // anything not listed below (metadata, title, style, unknown elements)
  container = 1,  // svg, g, a, switch, defs, symbol, clipPath, mask, marker, pattern
  shape = 2,      // path, rect, circle, ellipse, line, polyline, polygon
  text = 3,       // text, tspan, textPath
  image = 4,      // image
  use = 5,        // use
  paintServer = 6,  // linearGradient, radialGradient, stop
};

[[nodiscard]] SVGNodeKind svgNodeKindFromName(std::string_view elementName);

}  // namespace iconwright
