// The layer painter of real documents: a layer's asset, resolved for the slot and the
// localization (localized variants, mirroring), drawn through the layer's geometry at the
// output resolution — SVG documents as vectors, bitmaps resampled with a good filter.
#pragma once

#include "kit/render/IconRenderer.hpp"

namespace iconwright::kit {

[[nodiscard]] LayerPainter assetLayerPainter(const ResolvedRendering& rendering);

}  // namespace iconwright::kit
