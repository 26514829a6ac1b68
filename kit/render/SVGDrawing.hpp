// SVG documents drawn into a raster of the output size. Kept apart from the document model's
// headers: it works on a bitmap context, whose own blend-mode enumeration would meet the
// document's in one translation unit.
#pragma once

#include "foundation/graphics/Geometry.hpp"
#include "kit/render/Raster.hpp"

namespace iconwright {
class SVGDocument;
}

namespace iconwright::kit {

/// The document drawn as vectors over what `raster` holds, its canvas (units, y-down, origin top left) mapped through `canvasToPixels` (the raster's
/// pixels, y-down).
void drawSVG(const SVGDocument& document, const AffineTransform& canvasToPixels, Raster& raster);

}  // namespace iconwright::kit
