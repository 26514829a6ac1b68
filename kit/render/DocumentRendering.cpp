#include "kit/render/DocumentRendering.hpp"

#include "foundation/assets/RenderingConfiguration.hpp"
#include "kit/render/LayerDrawing.hpp"

namespace iconwright::kit {

ResolvedRendering resolveRendering(const IconComposition& icon, Platform platform, Rendition rendition,
                                   const Localization& localization) {
  RenderingConfiguration::Options options;
  options.localization = localization;
  const auto configuration = RenderingConfiguration::make(platform, icon.supportedPlatforms(), rendition, options);
  return {configuration.platform(), configuration.validatedRendition(), configuration.validatedSpecializationSlot(),
          localization};
}

std::optional<Raster> renderDocument(const IconComposition& icon, const ResolvedRendering& rendering,
                                     const RenderStyle& style, int pixelWidth, int pixelHeight) {
  return IconRenderer(icon, rendering, style, assetLayerPainter(rendering)).render(pixelWidth, pixelHeight);
}

}  // namespace iconwright::kit
