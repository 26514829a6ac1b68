// What the assets do with SVG documents beyond parsing and drawing: making a document with the
// colour space assumed for untagged colours, mirroring it in place (by wrapping its content in
// a flipping group, so that everything read afterwards sees the mirrored form), its view box,
// its compound path in canvas coordinates, its bytes, and whether it uses only light colours.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "foundation/assets/AssumedSVGColorSpace.hpp"
#include "foundation/graphics/ColorSpace.hpp"
#include "foundation/graphics/Geometry.hpp"
#include "foundation/graphics/Path.hpp"
#include "foundation/graphics/svg/SVGDocument.hpp"

namespace iconwright {

/// The raster colour space of an assumed SVG colour space: Display P3.
[[nodiscard]] ColorSpace colorSpace(AssumedSVGColorSpace space);
/// The SVG reader's value for it: SVGColorSpace::displayP3 (1).
[[nodiscard]] SVGColorSpace svgColorSpace(AssumedSVGColorSpace space);

/// Parses the bytes, with untagged colours in the assumed space when there is one and in the
/// reader's default (sRGB) otherwise. Null when they don't make a document.
[[nodiscard]] std::shared_ptr<SVGDocument> makeSVGDocument(
    std::span<const std::uint8_t> bytes, std::optional<AssumedSVGColorSpace> assumedColorSpace);

/// Mirrors left to right in place: the root's children move, in order, into a new group with
/// the transform "translate(<canvas width>, 0) scale(-1, 1)", which becomes the root's only
/// child. Without a root nothing happens.
void mirrorInPlace(SVGDocument& document);

/// The root's `viewBox` as written: exactly four numbers separated by blanks (commas are not
/// separators here), origin then size. Absent otherwise.
[[nodiscard]] std::optional<Rect> viewBox(const SVGDocument& document);

/// The root's compound path in canvas coordinates. Absent without a root, without geometry, or
/// without a well-formed view box. When the view box is narrower or lower than the canvas, a
/// point p goes to s × (p − view box origin), s the smaller of the two canvas/view box ratios;
/// otherwise the path is returned in view box units as it is, whatever the origin.
[[nodiscard]] std::optional<Path> compoundPath(const SVGDocument& document);

/// The document as SVG text (SVGDocument::writeToData).
[[nodiscard]] std::vector<std::uint8_t> data(const SVGDocument& document);

/// False as soon as a shape's fill or stroke (solid colour, or any present gradient stop) has a
/// lightness (max + min) / 2 of its Display P3 components below 0.85. Shapes without paints,
/// and documents without a root, count as light.
[[nodiscard]] bool svgUsesOnlyLightColors(const SVGDocument& document);

}  // namespace iconwright
