// SVG documents drawn into a raster of the output size. Kept apart from the document model's
// headers: it works on a bitmap context, whose own blend-mode enumeration would meet the
// document's in one translation unit.
#pragma once

#include <memory>
#include <optional>

#include "foundation/graphics/Geometry.hpp"
#include "kit/render/Raster.hpp"

namespace iconwright {
class SVGDocument;
}

namespace iconwright::kit {

/// The document drawn as vectors into a transparent `width` × `height` raster, its canvas
/// (units, y-down, origin top left) mapped through `canvasToPixels` (pixels, y-down). Absent
/// when no raster of that size can be made.
[[nodiscard]] std::optional<Raster> drawSVG(const SVGDocument& document, const AffineTransform& canvasToPixels,
                                            int width, int height);

}  // namespace iconwright::kit
