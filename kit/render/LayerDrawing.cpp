#include "kit/render/LayerDrawing.hpp"

#include "foundation/assets/AssetFile.hpp"
#include "foundation/document/Layer.hpp"
#include "kit/render/SVGDrawing.hpp"

namespace iconwright::kit {

LayerPainter assetLayerPainter(const ResolvedRendering& rendering) {
  return [rendering](Painter& painter, const Layer& layer) -> std::optional<Rect> {
    const GeometryResolutionContext context{rendering.slot, rendering.platform, rendering.localization};
    const auto image = layer.image(rendering.slot, rendering.localization);
    const auto assetToCanvas = layer.transformFromAssetToLogicalSpace(context);
    const auto frame = layer.frame(context);
    if (!image || !assetToCanvas || !frame) return std::nullopt;
    if (const Image* bitmap = image->bitmap()) {
      painter.drawImage(*bitmap, *assetToCanvas);
    } else if (const auto svg = image->svg()) {
      const AffineTransform toPixels = assetToCanvas->concatenating(painter.transform());
      painter.drawOnRaster([&](Raster& raster) { drawSVG(*svg, toPixels, raster); });
    }
    return frame;
  };
}

}  // namespace iconwright::kit
